"""Runs the statements of a batch and writes what they give to the reply."""
import re

import changes
import functions
from errors import Interrupted, SqlError, failure
from lexer import split_at
from procedures import Procedures, Returned
from session import Frame
from statements import statements_of
from tokens import DONE, ERROR


class BatchEnded(Exception):
    """A failure after which nothing of the batch runs."""


class Broke(Exception):
    pass


class Continued(Exception):
    pass


class Executor:
    """Statements of one client. The reply changes from message to message."""

    def __init__(self, session):
        self.session = session
        self.reply = None
        self.procedures = Procedures(self)

    # --- batches

    def batch(self, text):
        frame = Frame(DONE)
        try:
            self.run(self.parse(text, frame), frame)
        except (BatchEnded, Returned):
            pass

    def parse(self, text, frame):
        """The statements of a text; one that is no T-SQL ends the batch before it begins."""
        try:
            return statements_of(text)
        except SqlError as error:
            self.tell(error, frame)
            raise BatchEnded from None

    def run(self, statements, frame):
        for statement in statements:
            try:
                self.session.values["error"] = 0 if statement.kind not in ("if", "set variable", "print") else \
                    self.session.values["error"]
                KINDS[statement.kind](self, statement, frame)
            except SqlError as error:
                self.tell(error, frame)
                if error.number == 1205 and self.session.depth:
                    self.session.abandon()
                if error.ends_batch:
                    raise BatchEnded from None

    def tell(self, error, frame):
        self.session.values["error"] = error.number
        self.reply.message(error, frame.procedure)
        if error.severity > 10:
            self.reply.done(frame.done_kind, ERROR)

    def counted(self, count, frame, command):
        self.session.values["rowcount"] = count
        if frame.rows_are_counted:
            self.reply.done(frame.done_kind, count=count, command=command)
        elif frame.done_kind == DONE:
            self.reply.done(frame.done_kind, command=command)

    # --- queries

    def select(self, statement, frame):
        session = self.session
        session.before_reading()
        if any(item.low == "into" for item in statement.items):
            return self.counted(changes.select_into(session, statement.items, frame), frame, 0xC1)
        query = self.query(statement)
        if query.members and query.members[0].variable:
            return self.select_variables(query, frame)
        columns, blocks = session.result(query, frame)
        first = next(blocks, [])
        self.reply.columns(columns)
        count = self.send(columns, first, blocks)
        session.values["rowcount"] = count
        self.reply.done(frame.done_kind, count=count if frame.rows_are_counted else None)

    def query(self, statement):
        """The query that a statement is, made once."""
        if "query" not in statement.more:
            statement.more["query"] = self.session.query(statement.items)
        return statement.more["query"]

    def send(self, columns, block, blocks):
        count = 0
        while block:
            self.reply.rows(columns, block)
            count += len(block)
            if self.session.connection.poll_attention():
                raise Interrupted
            block = next(blocks, None)
        return count

    def select_variables(self, query, frame):
        """SELECT @a = ...: the last row's values stay; without a row, all stays as it was."""
        rows = self.session.rows(self.session.execute(query.sql, frame), None)
        if rows:
            for member, value in zip(query.members, rows[-1]):
                frame.assign(member.variable, value)
        self.session.values["rowcount"] = len(rows)

    def change(self, statement, frame):
        self.session.before_writing()
        command, routine = changes.COMMANDS[statement.kind]
        self.counted(routine(self.session, statement, frame), frame, command)

    def define(self, statement, frame):
        self.session.before_writing()
        changes.define(self.session, statement.items)

    # --- the flow

    def if_(self, statement, frame):
        self.run(statement.body if self.session.holds(statement.items, frame) else statement.otherwise, frame)

    def while_(self, statement, frame):
        while self.session.holds(statement.items, frame):
            if self.session.connection.poll_attention():
                raise Interrupted
            try:
                self.run(statement.body, frame)
            except Broke:
                break
            except Continued:
                continue

    def block(self, statement, frame):
        self.run(statement.body, frame)

    def break_(self, statement, frame):
        raise Broke

    def continue_(self, statement, frame):
        raise Continued

    def return_(self, statement, frame):
        raise Returned(int(self.session.value(statement.items, frame) or 0) if statement.items else 0)

    def waitfor(self, statement, frame):
        found = re.fullmatch(r"(\d+):(\d+)(?::(\d+(?:\.\d+)?))?", statement.items[-1].text)
        if len(statement.items) != 3 or statement.items[1].low != "delay" or not found:
            raise failure(102, "waitfor")
        seconds = int(found[1]) * 3600 + int(found[2]) * 60 + float(found[3] or 0)
        if self.session.connection.poll_attention(seconds):
            raise Interrupted

    # --- variables and settings

    def declare(self, statement, frame):
        for variable in statement.more["variables"]:
            if variable.name in frame.types:
                raise failure(134, variable.name)
            frame.declare(variable.name, variable.type,
                          self.session.value(variable.default, frame) if variable.default else None)

    def set_variable(self, statement, frame):
        name = statement.more["name"]
        frame.type(name)
        frame.assign(name, self.session.value(statement.items, frame))

    def set_option(self, statement, frame):
        """The options that matter; all others are taken and mean nothing."""
        words = [item.text.lower() for item in statement.items if item.kind != "group"]
        on = words[-1:] == ["on"]
        if words[:1] == ["nocount"]:
            frame.rows_are_counted = not on
        elif words[:1] == ["implicit_transactions"]:
            self.session.implicit = on
        elif words[:1] == ["identity_insert"]:
            table = words[-2]
            (self.session.identity_insert.add if on else self.session.identity_insert.discard)(table)

    def use(self, statement, frame):
        name = statement.items[-1].text
        if not self.session.open(name):
            raise failure(911, name)

    def print_(self, statement, frame):
        text = functions.text_of(self.session.value(statement.items[1:], frame) or "")
        self.reply.message(SqlError(0, text, severity=0), frame.procedure)

    def raise_error(self, statement, frame):
        """RAISERROR (text, severity, state, values ...)."""
        parts = [self.session.value(part, frame) for part in split_at(statement.items[1])]
        values = tuple(parts[3:])
        raise SqlError(50000, parts[0] % values if values else str(parts[0]), int(parts[1]), int(parts[2]))

    def nothing(self, statement, frame):
        pass

    # --- transactions

    def begin_transaction(self, statement, frame):
        self.session.begin()

    def commit(self, statement, frame):
        self.session.commit()

    def rollback(self, statement, frame):
        self.session.rollback(statement.more["name"])

    def save(self, statement, frame):
        self.session.save(statement.more["name"])

    # --- procedures

    def create_procedure(self, statement, frame):
        self.procedures.create(statement, frame)

    def execute(self, statement, frame):
        self.procedures.execute(statement, frame)

    def execute_text(self, statement, frame):
        """EXEC (text): a batch of its own, whose variables nobody else sees."""
        inner = Frame(frame.done_kind, frame.procedure)
        self.run(self.parse(str(self.session.value(statement.items, frame)), inner), inner)


KINDS = {
    "select": Executor.select, "with": Executor.select, "insert": Executor.change, "update": Executor.change,
    "delete": Executor.change, "truncate": Executor.define, "create": Executor.define, "drop": Executor.define,
    "alter": Executor.define, "if": Executor.if_, "while": Executor.while_, "block": Executor.block,
    "break": Executor.break_, "continue": Executor.continue_, "return": Executor.return_, "waitfor": Executor.waitfor,
    "declare": Executor.declare, "set variable": Executor.set_variable, "set": Executor.set_option, "use": Executor.use,
    "print": Executor.print_, "raiserror": Executor.raise_error, "begin transaction": Executor.begin_transaction,
    "commit": Executor.commit, "rollback": Executor.rollback, "save": Executor.save,
    "procedure": Executor.create_procedure, "execute": Executor.execute, "execute text": Executor.execute_text,
    "grant": Executor.nothing, "revoke": Executor.nothing, "deny": Executor.nothing, "dbcc": Executor.nothing,
    "checkpoint": Executor.nothing, "kill": Executor.nothing,
}
