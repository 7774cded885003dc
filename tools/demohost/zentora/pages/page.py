"""What a page is: it draws itself into the screen's picture and takes keys."""


class Page:
    title = ""

    def __init__(self, session):
        self.session = session

    def draw(self, screen):
        """Draws rows 1 to 22; called after every block of keys and every second."""
        raise NotImplementedError

    def onKey(self, key):
        """Takes one key, named as keys.py names them."""

    def hints(self):
        return []

    def statusText(self):
        return ""
