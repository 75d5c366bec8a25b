"""Failures with the numbers, severities and texts of a T-SQL server, and what SQLite's own messages mean in them."""
import re


class SqlError(Exception):
    """A failure that the client is told by an ERROR token."""

    def __init__(self, number, message, severity=16, state=1):
        super().__init__(message)
        self.number = number
        self.message = message
        self.severity = severity
        self.state = state

    @property
    def ends_batch(self):
        """Names that are not there, conversions and deadlocks end the batch; broken rules only end their statement."""
        return self.number not in GOES_ON


class Interrupted(Exception):
    """The client sent an ATTENTION packet while its request was running."""


# number: (severity, text)
TEXTS = {
    102: (15, "Incorrect syntax near '{0}'."),
    105: (15, "Unclosed quotation mark after the character string '{0}'."),
    128: (15, "The name '{0}' is not permitted in this context."),
    134: (15, "The variable name '{0}' has already been declared."),
    137: (15, "Must declare the scalar variable '{0}'."),
    195: (15, "'{0}' is not a recognized function name."),
    201: (16, "Procedure or function '{0}' expects parameter '{1}', which was not supplied."),
    207: (16, "Invalid column name '{0}'."),
    208: (16, "Invalid object name '{0}'."),
    209: (16, "Ambiguous column name '{0}'."),
    213: (16, "Column name or number of supplied values does not match table definition."),
    241: (16, "Conversion failed when converting datetime from character string."),
    245: (16, "Conversion failed when converting the varchar value '{0}' to data type {1}."),
    515: (16, "Cannot insert the value NULL into column '{1}', table '{0}'; column does not allow nulls. "
              "The statement fails."),
    544: (16, "Cannot insert explicit value for identity column in table '{0}' when IDENTITY_INSERT is set to OFF."),
    547: (16, "The statement conflicted with the {0} constraint. The statement has been terminated."),
    911: (16, "Could not locate entry in sysdatabases for database '{0}'. No entry found with that name."),
    1205: (13, "Transaction was deadlocked on lock resources with another process and has been chosen as the deadlock "
               "victim. Rerun the transaction."),
    2627: (14, "Violation of UNIQUE KEY constraint. Cannot insert duplicate key in object '{0}'."),
    2714: (16, "There is already an object named '{0}' in the database."),
    2715: (16, "Cannot find data type {0}."),
    2812: (16, "Could not find stored procedure '{0}'."),
    3701: (11, "Cannot drop the {0} '{1}', because it does not exist or you do not have permission."),
    3902: (16, "The COMMIT TRANSACTION request has no corresponding BEGIN TRANSACTION."),
    3903: (16, "The ROLLBACK TRANSACTION request has no corresponding BEGIN TRANSACTION."),
    4060: (11, "Cannot open database \"{0}\" requested by the login. The login failed."),
    8009: (16, "The incoming tabular data stream is incorrect."),
    8114: (16, "Error converting data type {0} to {1}."),
    8115: (16, "Arithmetic overflow error converting expression to data type {0}."),
    8134: (16, "Divide by zero error encountered."),
    8144: (16, "Procedure or function {0} has too many arguments specified."),
    8145: (16, "{1} is not a parameter for procedure {0}."),
    8152: (16, "String or binary data would be truncated."),
    8169: (16, "Conversion failed when converting from a character string to uniqueidentifier."),
    8178: (16, "Parameterized query expects parameter {0}, which was not supplied."),
    15025: (16, "There is a login '{0}' already."),
    15151: (16, "Cannot drop the login '{0}', because it does not exist or you do not have permission."),
    16916: (16, "A cursor with the name '{0}' does not exist."),
    18456: (14, "Login failed for user '{0}'."),
    50000: (16, "{0}"),
}

GOES_ON = {515, 544, 547, 2601, 2627, 2812, 8115, 8134, 8152, 50000}

# what SQLite says: (pattern, number); the groups fill the places of the text
MEANINGS = [(re.compile(pattern, re.DOTALL), number) for pattern, number in [
    (r"no such table: (?:main\.|temp\.)?(.*)", 208),
    (r"no such view: (?:main\.)?(.*)", 208),
    (r"no such column: (?:.*\.)?(.*)", 207),
    (r"table .* has no column named (.*)", 207),
    (r"ambiguous column name: (?:.*\.)?(.*)", 209),
    (r"UNIQUE constraint failed: ([^.]*)\..*", 2627),
    (r"UNIQUE constraint failed: index '(.*)'", 2627),
    (r"NOT NULL constraint failed: (.*)\.(.*)", 515),
    (r"(FOREIGN KEY) constraint failed", 547),
    (r"CHECK constraint failed: (.*)", 547),
    (r"database (?:table )?is locked.*", 1205),
    (r'near "(.*)": syntax error', 102),
    (r"unrecognized token: \"(.*)\"", 105),
    (r"incomplete input()", 102),
    (r"(?:table|view|index) \[?\"?(.*?)\"?\]? already exists.*", 2714),
    (r"there is already (?:a table|an index|another table or index with this name:?) ?(?:named )?(.*)", 2714),
    (r"table .* has \d+ columns but \d+ values were supplied", 213),
    (r"\d+ values for \d+ columns", 213),
    (r"no such function: (.*)", 195),
    (r"(integer) overflow", 8115),
]]

# A rule on a declared type is a CHECK constraint named "number:column:type".
NAMED_RULE = re.compile(r"CHECK constraint failed: (\d+):([^:]*):(.*)")


def failure(number, *places):
    severity, text = TEXTS[number]
    return SqlError(number, text.format(*places), severity)


def from_sqlite(error):
    """The T-SQL failure for what SQLite raised."""
    said = str(error)
    rule = NAMED_RULE.match(said)
    if rule:
        number, column, declared = rule.groups()
        if number == "245":
            return SqlError(245, f"Conversion failed when converting a varchar value to data type {declared} of column "
                                 f"'{column}'.")
        return failure(int(number), declared) if number == "8115" else failure(int(number), "varchar", declared)
    for pattern, number in MEANINGS:
        found = pattern.fullmatch(said)
        if found:
            return failure(number, *(group.strip('[]"') for group in found.groups()))
    return failure(50000, said)
