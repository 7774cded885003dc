"""The pages, by name."""

from zentora.pages.agents import AgentsPage
from zentora.pages.callback import CallbackPage
from zentora.pages.farewell import FarewellPage
from zentora.pages.guide import GuidePage
from zentora.pages.menu import MenuPage
from zentora.pages.report import ReportPage
from zentora.pages.signon import SignOnPage

_pages = {
    "signon": SignOnPage, "menu": MenuPage, "agents": AgentsPage, "callback": CallbackPage,
    "report": ReportPage, "guide": GuidePage, "farewell": FarewellPage,
}


def makePage(name, session):
    return _pages[name](session)
