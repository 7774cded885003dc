# What a login from a QXTERM terminal needs. Put it into /etc/profile.d; docs/hosts.md tells the reasons.
# It does nothing for other terminals and in shells that nobody types into. POSIX sh.

# Prints the 8-bit counterpart of the locale $1, or the locale itself when it is an 8-bit one already. "C" when the host
# has none.
qxterm_locale() {
    case $(LC_ALL=$1 locale charmap 2>/dev/null) in
        UTF-8 | GB* | EUC-* | BIG5* | SHIFT_JIS* | *MS932*) ;;
        *)
            printf '%s\n' "$1"
            return
            ;;
    esac
    qxterm_language=${1%%[.@]*}
    for qxterm_candidate in ISO-8859-1 ISO-8859-15; do
        # A name that the host does not know has the character set of "C", whatever it says.
        if [ "$(LC_ALL=$qxterm_language.$qxterm_candidate locale charmap 2>/dev/null)" = "$qxterm_candidate" ]; then
            printf '%s\n' "$qxterm_language.$qxterm_candidate"
            return
        fi
    done
    echo C
}

case ${TERM-}:$- in
    qxterm:*i*)
        # Each byte is a character here. Without this, boxes and letters with accents come out as two or three characters.
        for qxterm_name in LANG LC_ALL LC_CTYPE LC_COLLATE LC_MESSAGES LC_MONETARY LC_NUMERIC LC_TIME; do
            eval "qxterm_value=\${$qxterm_name-}"
            if [ -n "$qxterm_value" ]; then
                eval "export $qxterm_name=\$(qxterm_locale \"\$qxterm_value\")"
            fi
        done

        if [ -t 0 ]; then
            # Telnet and serial lines do not tell the size, and leave it 0.
            case $(stty size 2>/dev/null) in
                "0 "* | *" 0") stty rows 24 columns 80 ;;
            esac
            # The Backspace key sends ^H; ^? is the Delete key.
            stty erase '^H'
        fi

        # For bash's line editor, too. Put it into /etc/inputrc for the other programs that use readline.
        if [ -n "${BASH_VERSION-}" ]; then
            bind '"\C-?": delete-char' 2>/dev/null || :
        fi

        # dircolors and ls know the terminals that have colours by name. With this they ask no further. Folders are not
        # blue: bold is no brighter than normal, and blue on black is hard to read.
        : "${COLORTERM:=8}"
        export COLORTERM
        if [ -z "${LS_COLORS-}" ] && command -v dircolors >/dev/null; then
            eval "$(dircolors -b)"
            LS_COLORS="$LS_COLORS:di=01;33:ow=30;42:"
        fi

        unset qxterm_candidate qxterm_language qxterm_name qxterm_value
        ;;
esac
unset -f qxterm_locale
