"""Remote procedure calls: the server's own procedures for prepared statements and cursors, and all others by name."""
from typing import Any, NamedTuple

from columns import with_types_of_values
from cursors import Cursors
from datatypes import SqlType
from errors import SqlError, failure
from executor import BatchEnded
from procedures import Returned, declare_parameters
from session import Frame
from statements import statements_of
from tokens import DONE_IN_PROCEDURE, DONE_PROCEDURE, ERROR
from values import read_parameter

# A request may name a procedure by a number, after a length of all ones.
BY_NUMBER = 0xFFFF
NUMBERS = {1: "sp_cursor", 2: "sp_cursoropen", 3: "sp_cursorprepare", 4: "sp_cursorexecute", 5: "sp_cursorprepexec",
           6: "sp_cursorunprepare", 7: "sp_cursorfetch", 8: "sp_cursoroption", 9: "sp_cursorclose", 10: "sp_executesql",
           11: "sp_prepare", 12: "sp_execute", 13: "sp_prepexec", 14: "sp_prepexecrpc", 15: "sp_unprepare"}
NEXT_CALL = 0x80      # stands between the calls of one message
BY_REFERENCE, DEFAULTED = 0x01, 0x02
INT = SqlType("int")
OUTPUT_TYPES = {"text": SqlType("varchar", 8000), "ntext": SqlType("nvarchar", 4000),
                "image": SqlType("varbinary", 8000)}


class Parameter(NamedTuple):
    name: str
    output: bool
    defaulted: bool
    type: SqlType
    value: Any


def read_request(reader):
    """A procedure's name and the parameters."""
    length = reader.u2()
    name = NUMBERS.get(reader.u2(), "?") if length == BY_NUMBER else reader.text(length)
    reader.u2()      # options
    parameters = []
    while reader.left() > 0 and reader.next() != NEXT_CALL:
        parameter_name = reader.text(reader.u1())
        status = reader.u1()
        sql_type, value = read_parameter(reader)
        parameters.append(Parameter(parameter_name, bool(status & BY_REFERENCE), bool(status & DEFAULTED), sql_type,
                                    value))
    return name.split(".")[-1].split(";")[0].strip("[]\""), parameters


class Prepared(NamedTuple):
    statements: list
    declarations: str


class Calls:
    """Runs the calls of one client."""

    def __init__(self, session, executor):
        self.session = session
        self.executor = executor
        self.cursors = Cursors(session)
        self.prepared = {}
        self.last = 0

    def run(self, reader):
        """All calls of a message."""
        while reader.left() > 0:
            self.run_one(*read_request(reader))
            if reader.left() > 0:
                reader.u1()

    def run_one(self, name, parameters):
        status = 0
        try:
            routine = OWN.get(name.lower())
            if routine:
                status = routine(self, parameters) or 0
            else:
                self.call(name, parameters)
        except SqlError as error:
            self.executor.tell(error, Frame(DONE_IN_PROCEDURE, name))
            status = ERROR
            if error.number == 1205 and self.session.depth:
                self.session.abandon()
        except BatchEnded:
            status = ERROR
        self.executor.reply.done(DONE_PROCEDURE, status)

    def call(self, name, parameters):
        sent = [parameter for parameter in parameters if not parameter.defaulted]
        given = [(parameter.name, parameter.value, parameter.output) for parameter in sent]
        status, outputs = self.executor.procedures.call(name, given)
        reply = self.executor.reply
        reply.return_status(status)
        for place, (parameter, (sql_type, value)) in enumerate(zip(sent, outputs)):
            if parameter.output:
                reply.return_value(place, parameter.name, OUTPUT_TYPES.get(sql_type.name, sql_type), value)

    def statements(self, statements, declarations, parameters):
        """Runs a text with parameters, and gives back those that are declared OUTPUT."""
        frame = Frame(DONE_IN_PROCEDURE)
        declared = declare_parameters(frame, declarations, [parameter.value for parameter in parameters])
        try:
            self.executor.run(statements, frame)
        except Returned:
            pass
        self.executor.reply.return_status(0)
        for place, (declaration, parameter) in enumerate(zip(declared, parameters)):
            if parameter.output:
                sql_type = OUTPUT_TYPES.get(declaration.type.name, declaration.type)
                self.executor.reply.return_value(place, parameter.name, sql_type, frame.values[declaration.name])

    def execute_sql(self, parameters):
        declarations = parameters[1].value if len(parameters) > 1 else ""
        self.statements(statements_of(parameters[0].value), declarations, parameters[2:])

    def keep(self, parameters):
        """sp_prepare's and sp_prepexec's handle, declarations and text; a handle given is closed."""
        handle, declarations, text = parameters[:3]
        self.prepared.pop(handle.value, None)
        statements = statements_of(text.value)
        self.last += 1
        self.prepared[self.last] = Prepared(statements, declarations.value or "")
        return self.last

    def prepare(self, parameters):
        """Tells the columns of a query before it is run."""
        handle = self.keep(parameters)
        prepared, reply = self.prepared[handle], self.executor.reply
        frame = Frame(DONE_IN_PROCEDURE)
        count = prepared.declarations.count("@")
        declare_parameters(frame, prepared.declarations, [None] * count)
        first = prepared.statements[0] if prepared.statements else None
        if first and first.kind in ("select", "with") and not any(item.low == "into" for item in first.items):
            columns = self.described(first, frame)
            if columns:
                reply.columns(columns)
                reply.done(DONE_IN_PROCEDURE)
        reply.return_status(0)
        reply.return_value(0, "", INT, handle)

    def described(self, statement, frame):
        query = self.executor.query(statement)
        if query.members and query.members[0].variable:
            return None
        columns = self.session.columns(query, frame)
        if columns is None:      # explaining it fails as running it would
            self.session.execute(f"EXPLAIN {query.sql}", frame)
        return columns and with_types_of_values(columns, [])

    def execute(self, parameters):
        prepared = self.prepared.get(parameters[0].value)
        if prepared is None:
            raise SqlError(8179, f"Could not find prepared statement with handle {parameters[0].value}.")
        self.statements(prepared.statements, prepared.declarations, parameters[1:])

    def prepare_and_execute(self, parameters):
        handle = self.keep(parameters)
        try:
            self.statements(self.prepared[handle].statements, parameters[1].value, parameters[3:])
        finally:
            self.executor.reply.return_value(0, "", INT, handle)

    def unprepare(self, parameters):
        self.prepared.pop(parameters[0].value, None)
        self.executor.reply.return_status(0)

    # --- cursors

    def open_cursor(self, parameters):
        """Handle, text, scrolling, concurrency, rows, declarations and values. A text that is no query runs plainly."""
        text, scroll, concurrency = parameters[1], parameters[2], parameters[3]
        declarations = parameters[5].value if len(parameters) > 5 else ""
        statements = statements_of(text.value)
        if len(statements) != 1 or statements[0].kind not in ("select", "with"):
            self.statements(statements, declarations, parameters[6:])
            self.executor.reply.return_value(0, parameters[0].name, INT, 0)
            return
        frame = Frame(DONE_IN_PROCEDURE)
        declare_parameters(frame, declarations, [parameter.value for parameter in parameters[6:]])
        handle = self.cursors.open(statements[0], frame, scroll.value or 0)
        cursor, reply = self.cursors.get(handle), self.executor.reply
        reply.columns(cursor.columns)
        reply.done(DONE_IN_PROCEDURE)
        reply.return_status(0)
        answers = [handle, None, scroll.value, concurrency.value, cursor.rows.count()]
        for place, (parameter, answer) in enumerate(zip(parameters, answers)):
            if parameter.output:
                reply.return_value(place, parameter.name, INT, answer)

    def fetch_cursor(self, parameters):
        numbers = [parameter.value for parameter in parameters] + [None] * 4
        answer = self.cursors.fetch(self.executor.reply, *numbers[:4])
        self.executor.reply.return_status(0)
        for place, number in enumerate(answer or ()):
            self.executor.reply.return_value(place + 2, "", INT, number)

    def close_cursor(self, parameters):
        self.cursors.close(parameters[0].value)
        self.executor.reply.return_status(0)

    def set_cursor_option(self, parameters):
        self.cursors.get(parameters[0].value)
        self.executor.reply.return_status(0)

    def refuse(self, parameters):
        raise failure(50000, "This server has no changes through cursors.")


OWN = {
    "sp_executesql": Calls.execute_sql, "sp_prepare": Calls.prepare, "sp_execute": Calls.execute,
    "sp_prepexec": Calls.prepare_and_execute, "sp_unprepare": Calls.unprepare, "sp_cursoropen": Calls.open_cursor,
    "sp_cursorfetch": Calls.fetch_cursor, "sp_cursorclose": Calls.close_cursor,
    "sp_cursoroption": Calls.set_cursor_option, "sp_cursor": Calls.refuse,
}
