"""The last page of a session."""

from zentora.pages.page import Page
from zentora.style import FRAME, NORMAL, STRONG


class FarewellPage(Page):
    title = "Goodbye"

    def __init__(self, session):
        super().__init__(session)
        self.reason = ""

    def draw(self, screen):
        screen.box(8, 14, 14, 65, FRAME, "Zentora", STRONG)
        for row, text, style in ((10, self.reason, STRONG), (12, "Thank you for your time. Goodbye.", NORMAL)):
            screen.put(row, (80 - len(text)) // 2, text, style)

    def statusText(self):
        return "The session has ended"
