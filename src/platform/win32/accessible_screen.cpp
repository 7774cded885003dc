#include "platform/win32/accessible_screen.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "platform/screen_reading.h"
#include "platform/win32/accessibility_libraries.h"
#include "platform/win32/picture_native.h"

// IAccessible and IEnumVARIANT by hand, since no library of the system's makes them. A reader in another
// process calls them whenever it likes, from within any message loop of this program: in the middle of a
// block, too. Nothing is kept between two calls, so that each answer is what stands on the screen.

namespace qxterm::win32 {
namespace {

/// What a text of the screen is in the system's code page.
std::wstring wide(const std::string& text) {
    const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring result(static_cast<std::size_t>(std::max(length, 0)), L' ');
    MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(), length);
    return result;
}

HRESULT give(const std::wstring& text, BSTR* result) {
    // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): see AccessibilityLibraries
    *result = accessibility().makeText(text.data(), static_cast<UINT>(text.size()));
    return *result != nullptr ? S_OK : E_OUTOFMEMORY;
}

void giveNumber(VARIANT& result, LONG number) {
    result.vt = VT_I4;
    result.lVal = number;
}

/// The window that an object tells about; none once it has gone.
struct Screen {
    PictureBox* box;
    HWND window;
};

/// Child n is row n, counted from 1; CHILDID_SELF is the screen.
class AccessibleScreen final : public IAccessible, public IEnumVARIANT {
public:
    AccessibleScreen(std::shared_ptr<Screen> screen, ULONG next) : screen_{std::move(screen)}, next_{next} {}
    AccessibleScreen(const AccessibleScreen&) = delete;
    AccessibleScreen& operator=(const AccessibleScreen&) = delete;

    // --- IUnknown ------------------------------------------------------------------------------------------
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** result) override {
        if (result == nullptr) return E_POINTER;
        *result = nullptr;
        if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDispatch) ||
            IsEqualIID(id, IID_IAccessible)) {
            *result = static_cast<IAccessible*>(this);
        } else if (IsEqualIID(id, IID_IEnumVARIANT)) {
            *result = static_cast<IEnumVARIANT*>(this);
        } else {
            return E_NOINTERFACE;
        }
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    // --- IDispatch: readers call the interface itself ------------------------------------------------------
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }

    // --- IAccessible: the tree -----------------------------------------------------------------------------
    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
        if (parent == nullptr) return E_POINTER;
        *parent = nullptr;
        if (!connected()) return CO_E_OBJNOTCONNECTED;
        void* found = nullptr;
        const HRESULT result =
            // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): see AccessibilityLibraries
            accessibility().objectOf(screen_->window, static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                     &found);
        if (SUCCEEDED(result)) *parent = static_cast<IDispatch*>(found);
        return result;
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
        if (count == nullptr) return E_POINTER;
        *count = connected() ? pictureRows : 0;
        return connected() ? S_OK : CO_E_OBJNOTCONNECTED;
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** result) override {
        if (result == nullptr) return E_POINTER;
        *result = nullptr;
        if (const HRESULT wrong = refused(child)) return wrong;
        if (child.lVal != CHILDID_SELF) return S_FALSE;  // rows are no objects of their own
        AddRef();
        *result = static_cast<IAccessible*>(this);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT from, VARIANT* to) override {
        if (to == nullptr) return E_POINTER;
        to->vt = VT_EMPTY;
        if (const HRESULT wrong = refused(from)) return wrong;
        const bool self = from.lVal == CHILDID_SELF;
        LONG row = 0;
        switch (direction) {
            case NAVDIR_FIRSTCHILD: row = self ? 1 : 0; break;
            case NAVDIR_LASTCHILD: row = self ? pictureRows : 0; break;
            case NAVDIR_NEXT:
            case NAVDIR_DOWN: row = self ? 0 : from.lVal + 1; break;
            case NAVDIR_PREVIOUS:
            case NAVDIR_UP: row = self ? 0 : from.lVal - 1; break;
            default: break;
        }
        if (row < 1 || row > pictureRows) return self ? besideTheScreen(direction, to) : S_FALSE;
        giveNumber(*to, row);
        return S_OK;
    }

    // --- IAccessible: what is told -------------------------------------------------------------------------
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
        return text(child, name, [](LONG row) -> std::wstring {
            if (row == CHILDID_SELF) return L"Terminal screen";
            return row == pictureRows ? L"Status line" : L"Row " + std::to_wstring(row);
        });
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
        return text(child, value, [](LONG row) {
            const ScreenReading reading = screenReader.read();
            if (row != CHILDID_SELF) return wide(reading.rows[index(row)]);
            std::wstring all;
            for (const std::string& line : reading.rows) all += wide(line) + L"\r\n";
            return all;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* description) override {
        if (description == nullptr) return E_POINTER;
        *description = nullptr;
        if (const HRESULT wrong = refused(child)) return wrong;
        return guarded([&] {
            const std::wstring told = describe(child.lVal);
            return told.empty() ? S_FALSE : give(told, description);
        });
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
        if (role == nullptr) return E_POINTER;
        role->vt = VT_EMPTY;
        if (const HRESULT wrong = refused(child)) return wrong;
        giveNumber(*role, child.lVal == CHILDID_SELF ? ROLE_SYSTEM_TEXT : ROLE_SYSTEM_STATICTEXT);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
        if (state == nullptr) return E_POINTER;
        state->vt = VT_EMPTY;
        if (const HRESULT wrong = refused(child)) return wrong;
        return guarded([&] {
            LONG bits = STATE_SYSTEM_READONLY;
            if (child.lVal == CHILDID_SELF) {
                bits |= STATE_SYSTEM_FOCUSABLE;
                if (GetFocus() == screen_->window) bits |= STATE_SYSTEM_FOCUSED;
            } else {
                bits |= STATE_SYSTEM_SELECTABLE;
                if (!screenReader.read().selected[index(child.lVal)].none()) bits |= STATE_SYSTEM_SELECTED;
            }
            if (IsWindowVisible(screen_->window) == 0) bits |= STATE_SYSTEM_INVISIBLE;
            giveNumber(*state, bits);
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override { return nothing(child, help); }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT child, LONG* topic) override {
        if (topic == nullptr) return E_POINTER;
        *topic = 0;
        return nothing(child, file);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
        return nothing(child, shortcut);
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
        return nothing(child, action);
    }

    // --- IAccessible: focus and selection ------------------------------------------------------------------
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
        if (child == nullptr) return E_POINTER;
        child->vt = VT_EMPTY;
        if (!connected()) return CO_E_OBJNOTCONNECTED;
        if (GetFocus() != screen_->window) return S_FALSE;
        giveNumber(*child, CHILDID_SELF);
        return S_OK;
    }
    /// One selected row, or an enumerator of them.
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
        if (children == nullptr) return E_POINTER;
        children->vt = VT_EMPTY;
        if (!connected()) return CO_E_OBJNOTCONNECTED;
        return guarded([&] {
            std::vector<LONG> rows;
            const ScreenReading reading = screenReader.read();
            for (LONG row = 1; row <= pictureRows; ++row) {
                if (!reading.selected[index(row)].none()) rows.push_back(row);
            }
            if (rows.empty()) return S_FALSE;
            if (rows.size() == 1) {
                giveNumber(*children, rows.front());
            } else {
                auto* const list = new AccessibleScreen{screen_, 0};
                list->children_ = std::move(rows);
                list->AddRef();
                children->vt = VT_UNKNOWN;
                children->punkVal = static_cast<IAccessible*>(list);
            }
            return S_OK;
        });
    }
    HRESULT STDMETHODCALLTYPE accSelect(LONG flags, VARIANT child) override {
        if (const HRESULT wrong = refused(child)) return wrong;
        if (child.lVal != CHILDID_SELF || flags != SELFLAG_TAKEFOCUS) return DISP_E_MEMBERNOTFOUND;
        if (IsWindowEnabled(GetParent(screen_->window)) == 0) return S_FALSE;
        SetForegroundWindow(GetParent(screen_->window));
        SetFocus(screen_->window);
        return S_OK;
    }

    // --- IAccessible: places, in pixels of the desktop -----------------------------------------------------
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                          VARIANT child) override {
        if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_POINTER;
        *left = *top = *width = *height = 0;
        if (const HRESULT wrong = refused(child)) return wrong;
        RECT area{};
        GetWindowRect(screen_->window, &area);
        *left = area.left;
        *top = area.top;
        *width = area.right - area.left;
        *height = area.bottom - area.top;
        if (child.lVal == CHILDID_SELF) return S_OK;
        const PictureState& state = stateOf(*screen_->box);
        *top += (child.lVal - 1) * state.cellHeight;
        *width = pictureColumns * state.cellWidth;
        *height = state.cellHeight;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG left, LONG top, VARIANT* child) override {
        if (child == nullptr) return E_POINTER;
        child->vt = VT_EMPTY;
        if (!connected()) return CO_E_OBJNOTCONNECTED;
        RECT area{};
        GetWindowRect(screen_->window, &area);
        if (PtInRect(&area, {left, top}) == 0) return S_FALSE;
        const PictureState& state = stateOf(*screen_->box);
        const LONG row = state.cellHeight > 0 ? (top - area.top) / state.cellHeight + 1 : CHILDID_SELF;
        giveNumber(*child, row <= pictureRows ? row : CHILDID_SELF);
        return S_OK;
    }

    // --- IAccessible: what cannot be done ------------------------------------------------------------------
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

    // --- IEnumVARIANT: the rows, or those selected ---------------------------------------------------------
    HRESULT STDMETHODCALLTYPE Next(ULONG count, VARIANT* children, ULONG* fetched) override {
        if (children == nullptr) return E_POINTER;
        ULONG given = 0;
        for (; given < count && next_ < rowCount(); ++given, ++next_)
            giveNumber(children[given], childAt(next_));
        if (fetched != nullptr) *fetched = given;
        return given == count ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
        const ULONG left = rowCount() - next_;
        next_ += std::min(count, left);
        return count <= left ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Reset() override {
        next_ = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** copy) override {
        if (copy == nullptr) return E_POINTER;
        *copy = nullptr;
        return guarded([&] {
            auto* const other = new AccessibleScreen{screen_, next_};
            other->children_ = children_;
            other->AddRef();
            *copy = other;
            return S_OK;
        });
    }

private:
    ~AccessibleScreen() = default;

    [[nodiscard]] bool connected() const { return screen_->window != nullptr; }
    [[nodiscard]] static std::size_t index(LONG row) { return static_cast<std::size_t>(row - 1); }
    [[nodiscard]] ULONG rowCount() const {
        return children_.empty() ? pictureRows : static_cast<ULONG>(children_.size());
    }
    [[nodiscard]] LONG childAt(ULONG n) const {
        return children_.empty() ? static_cast<LONG>(n) + 1 : children_[n];
    }

    /// Why a question about this child has no answer; S_OK when it has one.
    [[nodiscard]] HRESULT refused(const VARIANT& child) const {
        if (!connected()) return CO_E_OBJNOTCONNECTED;
        const bool known = child.vt == VT_I4 && child.lVal >= CHILDID_SELF && child.lVal <= pictureRows;
        return known ? S_OK : E_INVALIDARG;
    }

    /// No failure of the language's own may reach the caller.
    template <class Body>
    static HRESULT guarded(Body&& body) noexcept {
        try {
            return body();
        } catch (const std::bad_alloc&) {
            return E_OUTOFMEMORY;
        } catch (...) {
            return E_FAIL;
        }
    }

    template <class Make>
    HRESULT text(const VARIANT& child, BSTR* result, Make&& make) const {
        if (result == nullptr) return E_POINTER;
        *result = nullptr;
        if (const HRESULT wrong = refused(child)) return wrong;
        return guarded([&] { return give(make(child.lVal), result); });
    }
    HRESULT nothing(const VARIANT& child, BSTR* result) const {
        if (result == nullptr) return E_POINTER;
        *result = nullptr;
        const HRESULT wrong = refused(child);
        return wrong != S_OK ? wrong : S_FALSE;
    }

    /// Where on a row the cursor and the selection are, columns counted from 1.
    [[nodiscard]] static std::wstring describe(LONG row) {
        std::wstring told;
        const std::optional<ScreenPlace> place = screenReader.place();
        if (row == CHILDID_SELF) {
            if (place) {
                told = L"Cursor in row " + std::to_wstring(place->row + 1) + L", column " +
                       std::to_wstring(place->column + 1);
            }
            return told;
        }
        if (place && place->row == row - 1) told = L"Cursor in column " + std::to_wstring(place->column + 1);
        const ScreenReading::Columns selected = screenReader.read().selected[index(row)];
        if (selected.none()) return told;
        if (!told.empty()) told += L", ";
        return told + L"selected from column " + std::to_wstring(selected.first + 1) + L" to " +
               std::to_wstring(selected.last + 1);
    }

    /// The screen's neighbours are the system's business.
    HRESULT besideTheScreen(LONG direction, VARIANT* to) const {
        if (direction == NAVDIR_FIRSTCHILD || direction == NAVDIR_LASTCHILD) return S_FALSE;
        void* found = nullptr;
        const HRESULT made =
            // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): see AccessibilityLibraries
            accessibility().standardObject(screen_->window, OBJID_CLIENT, IID_IAccessible, &found);
        if (FAILED(made)) return S_FALSE;
        auto* const standard = static_cast<IAccessible*>(found);
        VARIANT self{};
        giveNumber(self, CHILDID_SELF);
        const HRESULT result = standard->accNavigate(direction, self, to);
        standard->Release();
        return result;
    }

    std::shared_ptr<Screen> screen_;
    ULONG references_ = 0;
    ULONG next_;
    std::vector<LONG> children_;  ///< of an enumerator of some rows; empty: all
};

/// The one that the window hands out, while anybody has asked for it.
struct Handed {
    std::shared_ptr<Screen> screen;
    AccessibleScreen* object = nullptr;
};

Handed& handed() {
    static Handed one;
    return one;
}

}  // namespace

LRESULT accessibleScreen(PictureBox& box, WPARAM wParam) {
    if (!accessibility().complete()) return 0;
    Handed& one = handed();
    HWND const window = box.native->window;
    if (one.screen == nullptr || one.screen->window != window) {
        endAccessibleScreen(one.screen != nullptr ? one.screen->window : nullptr);
        auto screen = std::make_shared<Screen>(Screen{&box, window});
        auto* const object = new AccessibleScreen{screen, 0};
        object->AddRef();
        one = {std::move(screen), object};
    }
    return accessibility().resultFrom(IID_IAccessible, wParam, static_cast<IAccessible*>(one.object));
}

void endAccessibleScreen(HWND window) {
    Handed& one = handed();
    if (one.screen == nullptr || one.screen->window != window) return;
    one.screen->window = nullptr;
    one.screen->box = nullptr;
    AccessibleScreen* const object = one.object;
    one = {};
    accessibility().coDisconnect(static_cast<IAccessible*>(object), 0);
    object->Release();
}

}  // namespace qxterm::win32
