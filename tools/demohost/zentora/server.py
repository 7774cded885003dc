"""Listening on the loopback address, and one task for each session."""

import asyncio

from zentora.session import Session

ADDRESS = "127.0.0.1"
SESSION_LIMIT = 32


async def serve(port, clock, idleLimit, once):
    """Listens until cancelled, or with once until the first session has ended. idleLimit is in seconds."""
    firstEnded = asyncio.Event()
    active = 0
    taken = False

    async def onConnect(reader, writer):
        nonlocal active, taken
        if active >= SESSION_LIMIT or (once and taken):
            writer.write(b"\r\nAll lines are in use. Please try again later.\r\n")
            writer.close()
            return
        active += 1
        taken = True
        try:
            await Session(reader, writer, clock, idleLimit).run()
        finally:
            active -= 1
            if once:
                firstEnded.set()

    server = await asyncio.start_server(onConnect, ADDRESS, port)
    chosen = server.sockets[0].getsockname()[1]
    print(f"demonstration host on {ADDRESS} port {chosen}", flush=True)
    async with server:
        await (firstEnded.wait() if once else server.serve_forever())
