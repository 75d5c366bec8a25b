"""Stored procedures: kept as text, parsed once, run in a frame of their own."""
import catalog
from datatypes import SqlType
from errors import SqlError, failure
from session import Frame
from statements import statements_of
from tokens import DONE, DONE_IN_PROCEDURE, DONE_PROCEDURE

DEEPEST = 32


class Returned(Exception):
    """RETURN ends a procedure or a batch."""

    def __init__(self, status):
        super().__init__()
        self.status = status


class Procedures:
    def __init__(self, executor):
        self.executor = executor
        self.session = executor.session
        self.parsed = {}          # a procedure's text: its statement

    def create(self, statement, frame):
        """CREATE PROCEDURE and ALTER PROCEDURE keep the whole text."""
        self.session.before_writing()
        self.executor.parse(statement.more["body"], frame)     # told now if it cannot be read
        verb = statement.more["text"].split(None, 1)[0].lower()
        if verb == "create" and self.session.procedure_text(statement.more["name"]):
            raise failure(2714, statement.more["name"])
        self.session.run("INSERT OR REPLACE INTO main.sys_procedures VALUES (?, ?)", statement.more["name"],
                         statement.more["text"])

    def execute(self, statement, frame):
        """EXEC: arguments are values or variables, which OUTPUT fills."""
        given = [argument for argument in statement.more["arguments"]
                 if [item.low for item in argument.items] != ["default"]]
        values = [(argument.name, self.argument_value(argument.items, frame), argument.output) for argument in given]
        status, outputs = self.call(statement.more["name"], values)
        for argument, (_, value) in zip(given, outputs):
            if argument.output:
                frame.assign(argument.items[0].low, value)
        if statement.more["status"]:
            frame.assign(statement.more["status"], status)
        if frame.done_kind == DONE:
            self.executor.reply.return_status(status)
            self.executor.reply.done(DONE_PROCEDURE)

    def argument_value(self, items, frame):
        if len(items) == 1 and items[0].kind == "word" and items[0].low != "null":
            return items[0].text     # a bare word is its own text
        return self.session.value(items, frame)

    def call(self, name, arguments):
        """Runs a procedure: its return status, and (type, value) for each argument given."""
        if name.lower() == "sp_executesql":
            return self.execute_sql([value for _, value, _ in arguments])
        if name.lower() in catalog.PROCEDURES:
            columns, rows = catalog.call(self.session, name.lower(), arguments)
            self.executor.reply.columns(columns, browse=False)
            self.executor.reply.rows(columns, rows)
            self.executor.reply.done(DONE_IN_PROCEDURE, count=len(rows))
            return 0, [(SqlType("int"), None) for _ in arguments]
        procedure = self.procedure(name)
        frame = Frame(DONE_IN_PROCEDURE, procedure.more["name"])
        names = self.bind(procedure, arguments, frame)
        status = self.body(procedure, frame)
        return status, [(frame.types[parameter], frame.values[parameter]) for parameter in names]

    def execute_sql(self, values):
        """sp_executesql text, declarations, values ... from a batch."""
        frame = Frame(DONE_IN_PROCEDURE)
        declare_parameters(frame, values[1] if len(values) > 1 else "", values[2:])
        self.executor.run(self.executor.parse(values[0], frame), frame)
        return 0, [(SqlType("int"), None) for _ in values]

    def procedure(self, name):
        text = self.session.procedure_text(name)
        if text is None:
            raise failure(2812, name)
        if text not in self.parsed:
            self.parsed[text] = statements_of(text)[0]
            self.parsed[text].body = statements_of(self.parsed[text].more["body"])
        return self.parsed[text]

    def bind(self, procedure, arguments, frame):
        """Gives the parameters their values; the names of those that were given, in the order of the arguments."""
        parameters, name = procedure.more["parameters"], procedure.more["name"]
        if len(arguments) > len(parameters):
            raise failure(8144, name)
        known = {parameter.name: parameter for parameter in parameters}
        given = {}
        for place, (argument, value, _) in enumerate(arguments):
            key = argument.lower() or parameters[place].name
            if key not in known:
                raise failure(8145, name, argument)
            given[key] = value
        for parameter in parameters:
            if parameter.name in given:
                value = given[parameter.name]
            elif parameter.default is not None:
                value = self.argument_value(parameter.default, frame)
            elif parameter.output:
                value = None
            else:
                raise failure(201, name, parameter.name)
            frame.declare(parameter.name, parameter.type, value)
        return list(given)

    def body(self, procedure, frame):
        values = self.session.values
        if values["nestlevel"] >= DEEPEST:
            raise SqlError(217, "Maximum stored procedure nesting level exceeded (limit 32).")
        values["nestlevel"] += 1
        try:
            self.executor.run(procedure.body, frame)
        except Returned as returned:
            return returned.status
        finally:
            values["nestlevel"] -= 1
        return 0


def declare_parameters(frame, declarations, values):
    """Declares "@P1 int, @P2 varchar(20) OUTPUT" with the values in order."""
    if not declarations or not declarations.strip():
        return []
    declared = statements_of("DECLARE " + declarations)[0].more["variables"]
    if len(values) < len(declared):
        raise failure(8178, declared[len(values)].name)
    for declaration, value in zip(declared, values):
        frame.declare(declaration.name, declaration.type, value)
    return declared
