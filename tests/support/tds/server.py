#!/usr/bin/python3
"""A T-SQL server for tests: TDS 7.1 on loopback, SQLite underneath.

    server.py --folder FOLDER [--port N] [--database NAME ...] [--user NAME] [--password TEXT] [--lock-seconds N]

The folder holds a file for each database. Port 0 is any free one; the port is printed when the server listens.
The user is the first; CREATE LOGIN adds others, who may do everything too, until the server ends.
A database has one writer at a time: another waits so many seconds for the end of its transaction, then fails with 1205.
"""
import sys

sys.dont_write_bytecode = True

import argparse
import itertools
import os
import socket
import socketserver
import struct

from errors import Interrupted, SqlError, failure
from executor import Executor
from rpc import Calls
from session import Session, prepare_file
from tokens import DONE, ERROR, Reply
from wire import (ATTENTION, LOGIN7, PRELOGIN, RPC, SQL_BATCH, Connection, PacketWriter, Reader, prelogin_answer,
                  read_login)

numbers = itertools.count(1)


class Client(socketserver.BaseRequestHandler):
    """One client, from its first packet to its last; what it left open is rolled back."""

    def handle(self):
        self.request.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        self.connection = Connection(self.request)
        self.session = Session(self.server.databases, self.server.logins, self.connection, next(numbers),
                               self.server.lock_seconds)
        self.executor = Executor(self.session)
        self.calls = Calls(self.session, self.executor)
        try:
            while self.message():
                pass
        except (ConnectionError, BrokenPipeError):
            pass
        finally:
            self.session.close()

    def message(self):
        """Answers one message; False when the connection ends."""
        kind, data = self.connection.receive_message()
        if kind is None:
            return False
        if kind == PRELOGIN:
            writer = PacketWriter(self.connection)
            writer.write(prelogin_answer())
            writer.close()
            return True
        reply = self.executor.reply = Reply(self.connection)
        if kind == LOGIN7:
            return self.login(read_login(data), reply)
        if kind == ATTENTION:
            self.connection.attention = True
        elif not self.session.db:
            return False
        else:
            self.request_message(kind, data, reply)
        reply.close()
        return True

    def login(self, login, reply):
        error = self.refusal(login)
        if error:
            reply.message(error)
            reply.done(DONE, ERROR)
            reply.close()
            return False
        self.session.values["user"] = login["user"]
        reply.login_accepted(self.session.database)
        reply.close()
        return True

    def refusal(self, login):
        """Why the client may not come in; None when it may. Users are the same in small and large letters."""
        if login["password"] != self.server.logins.get(login["user"].lower()):
            return failure(18456, login["user"])
        if not self.session.open(login["database"] or self.server.first):
            return failure(4060, login["database"])
        return None

    def request_message(self, kind, data, reply):
        try:
            if kind == SQL_BATCH:
                self.executor.batch(data.decode("utf-16le", "surrogatepass"))
            elif kind == RPC:
                self.calls.run(Reader(data))
            else:
                raise SqlError(50000, f"Packets of type {kind} are not known.")
        except Interrupted:
            pass      # the reply's end acknowledges it
        except (IndexError, struct.error):
            reply.message(failure(8009))
            reply.done(DONE, ERROR)
        except SqlError as error:
            reply.message(error)
            reply.done(DONE, ERROR)


class Server(socketserver.ThreadingMixIn, socketserver.TCPServer):
    daemon_threads = True
    allow_reuse_address = True
    request_queue_size = 64

    def __init__(self, port, folder, databases, user, password, lock_seconds):
        self.lock_seconds = lock_seconds
        self.logins = {user.lower(): password}    # name in small letters: password
        self.first = databases[0]
        self.databases = {name.lower(): os.path.join(folder, name.lower() + ".db") for name in databases + ["master"]}
        for path in self.databases.values():
            prepare_file(path)
        super().__init__(("127.0.0.1", port), Client)


def main():
    parser = argparse.ArgumentParser(description="A T-SQL server for tests.")
    parser.add_argument("--folder", required=True)
    parser.add_argument("--port", type=int, default=0)
    parser.add_argument("--database", action="append")
    parser.add_argument("--user", default="sa")
    parser.add_argument("--password", default="x")
    parser.add_argument("--lock-seconds", type=float, default=30)
    options = parser.parse_args()
    with Server(options.port, options.folder, options.database or ["test"], options.user, options.password,
                options.lock_seconds) as server:
        print(server.server_address[1], flush=True)
        server.serve_forever()


if __name__ == "__main__":
    main()
