"""T-SQL: where statements end, dates, expressions, types, failures."""
import unittest

import dates
from client import Client
from fixture import ServerTest
from lexer import tokens_of
from statements import statements_of


class SplittingTest(unittest.TestCase):
    TEXTS = [
        ("INSERT INTO t (a) VALUES (1) SELECT 'Id' = @@IDENTITY", ["insert", "select"]),
        ("INSERT INTO t VALUES ('SELECT ''x'' [y]') SELECT 1", ["insert", "select"]),
        ("INSERT INTO t SELECT a FROM u SELECT 2", ["insert", "select"]),
        ("INSERT t (a) SELECT 1 UNION ALL SELECT 2 UPDATE t SET a = 1", ["insert", "update"]),
        ("SELECT 1; SELECT 2 -- SELECT 3\n SELECT /* SELECT 4 */ 5", ["select", "select", "select"]),
        ("UPDATE t SET a = CASE WHEN b = 1 THEN 2 ELSE 3 END DELETE t", ["update", "delete"]),
        ("SET NOCOUNT ON INSERT INTO t VALUES (1)", ["set", "insert"]),
        ("IF @@TRANCOUNT > 0 ROLLBACK BEGIN TRANSACTION", ["if", "begin transaction"]),
        ("IF EXISTS (SELECT 1) BEGIN SELECT 1 SELECT 2 END ELSE SELECT 3 SELECT 4", ["if", "select"]),
        ("DECLARE @a int SET @a = (SELECT 1) SELECT @a", ["declare", "set variable", "select"]),
        ("CREATE TABLE t (a int REFERENCES u ON DELETE CASCADE) DROP TABLE t", ["create", "drop"]),
        ("CREATE VIEW v AS SELECT 1 AS a UNION SELECT 2", ["create"]),
        ("WITH g (n) AS (SELECT 1) SELECT n FROM g SELECT 2", ["with", "select"]),
        ("CREATE PROCEDURE p @a int AS SELECT 1 SELECT 2", ["procedure"]),
        ("sp_tables", ["execute"]),
        ("EXEC p 1, @b OUTPUT EXEC ('SELECT 1') RETURN 3", ["execute", "execute text", "return"]),
        ("GRANT SELECT, INSERT ON t TO public SELECT 1", ["grant"]),
        ("SELECT t.[select], \"update\" FROM [insert] t COMMIT TRAN x", ["select", "commit"]),
        ("", []),
    ]

    def test_statements_end_where_a_word_begins_another(self):
        for text, kinds in self.TEXTS:
            with self.subTest(text):
                self.assertEqual([statement.kind for statement in statements_of(text)], kinds)

    def test_backslash_is_ordinary_except_at_the_end_of_a_line(self):
        for text, value in [("'a\\b'", "a\\b"),
                            ("'a\\'", "a\\"), ("'a\\\nb'", "ab"), ("'a\\\r\nb'", "ab"), ("'a\nb'", "a\nb")]:
            self.assertEqual(tokens_of(text)[0].text, value)

    def test_line_ends_in_a_literal_of_its_own_is_kept(self):
        self.assertEqual([token.text for token in tokens_of("'a\\' + '\nb'")], ["a\\", "+", "\nb"])

    def test_doubled_quotes_and_brackets_stand_for_one(self):
        self.assertEqual([token.text for token in tokens_of("'it''s' N'n''' [a]]b] \"c\"\"d\" 0xAB")],
                         ["it's", "n'", "a]b", 'c"d', "0xAB"])


class DatesTest(unittest.TestCase):
    FORMS = [
        ("2026-11-20", "2026-11-20 00:00:00.000"), ("20261120 14:03", "2026-11-20 14:03:00.000"),
        ("2026-11-20T14:03:05.123", "2026-11-20 14:03:05.123"), ("11/20/26 2:03:05 PM", "2026-11-20 14:03:05.000"),
        ("11/20/2026 12:00 am", "2026-11-20 00:00:00.000"), ("Nov 20 2026  2:03PM", "2026-11-20 14:03:00.000"),
        ("20 Nov 2026", "2026-11-20 00:00:00.000"), ("14:03:05", "1900-01-01 14:03:05.000"),
        ("1/1/50", "1950-01-01 00:00:00.000"), ("2026-11-20 00:00:00.999", "2026-11-20 00:00:01.000"),
    ]

    def test_texts_are_read_in_many_forms(self):
        for text, kept in self.FORMS:
            self.assertEqual(dates.kept(dates.parse(text)), kept, text)

    def test_what_is_no_date_fails(self):
        for text in ["20/11/2026", "2026-02-30", "hello", "25:00", "12"]:
            with self.assertRaises(Exception, msg=text) as caught:
                dates.parse(text)
            self.assertEqual(caught.exception.number, 241)


class TypesTest(ServerTest):
    # declared, literal, type byte, bytes
    VALUES = [
        ("int", "-7", 0x26, "f9ffffff"), ("smallint", "300", 0x26, "2c01"), ("tinyint", "200", 0x26, "c8"),
        ("bigint", "9007199254740993", 0x26, "01000000000020 00"), ("bit", "1", 0x68, "01"),
        ("real", "1.5", 0x6D, "0000c03f"),
        ("float", "2.25", 0x6D, "0000000000000240"), ("numeric(9,2)", "-12.5", 0x6C, "00e2040000"),
        ("decimal(12,3)", "12345.678", 0x6A, "014e61bc0000000000"), ("money", "-1.5", 0x6E, "ffffffff68c5ffff"),
        ("smallmoney", "2", 0x6E, "204e0000"), ("char(3)", "'a'", 0xAF, "612020"),
        ("varchar(9)", "'\u20ac'", 0xA7, "80"),
        ("nchar(2)", "N'\u0416'", 0xEF, "16042000"), ("nvarchar(9)", "N'\U0001F600'", 0xE7, "3dd800de"),
        ("text", "'long'", 0x23, "6c6f6e67"), ("ntext", "N'x'", 0x63, "7800"), ("image", "0x00FF", 0x22, "00ff"),
        ("binary(3)", "0x01", 0xAD, "010000"), ("varbinary(9)", "0xABC", 0xA5, "0abc"),
        ("datetime", "'1900-01-02 00:00:01'", 0x6F, "010000002c010000"),
        ("smalldatetime", "'1900-01-02 00:01:00'", 0x6F, "01000100"),
        ("uniqueidentifier", "'00112233-4455-6677-8899-AABBCCDDEEFF'", 0x24, "33221100554477668899aabbccddeeff"),
    ]

    def test_values_and_nulls_of_every_type(self):
        for place, (declared, literal, kind, data) in enumerate(self.VALUES):
            with self.subTest(declared):
                self.run_all(f"CREATE TABLE t{place} (v {declared})", f"INSERT INTO t{place} VALUES ({literal})",
                             f"INSERT INTO t{place} VALUES (NULL)")
                answer = self.client.batch(f"SELECT v FROM t{place}")
                self.assertEqual(answer.columns[0][1], kind)
                value = answer.results[0][0][0]
                if kind in (0x6C, 0x6A):     # the sign goes before the digits
                    self.assertEqual(value[0], 0 if literal[0] == "-" else 1)
                self.assertEqual(value, bytes.fromhex(data))
                self.assertIsNone(answer.results[0][1][0])

    EXPRESSIONS = [
        ("@@ROWCOUNT", 0x26), ("COUNT(*)", 0x26), ("MAX(d)", 0x6F), ("SUM(n)", 0x6C), ("GETDATE()", 0x6F),
        ("'a'", 0xA7),
        ("N'a'", 0xE7), ("CAST(1 AS smallint)", 0x26), ("CONVERT(varchar(5), 1)", 0xA7), ("1.5", 0x6C), ("1e0", 0x6D),
        ("0x01", 0xA5), ("NULL", 0x26), ("NEWID()", 0x24), ("ISNULL(MAX(d), GETDATE())", 0x6F), ("@@IDENTITY", 0x6C),
    ]

    def test_expressions_have_types_without_values(self):
        self.run_all("CREATE TABLE t (d datetime, n numeric(9,2))")
        for expression, kind in self.EXPRESSIONS:
            answer = self.client.batch(f"SELECT {expression} AS x FROM t")
            self.assertEqual((answer.errors, answer.columns[0][1]), ([], kind), expression)


class LanguageTest(ServerTest):
    NUMBERS = [
        ("7 / 2", 3), ("-7 % 3", -1), ("LEN('ab  ')", 2), ("CHARINDEX('B', 'abc')", 2), ("ISNULL(NULL, 4)", 4),
        ("DATEPART(month, '2026-11-20')", 11), ("DATEDIFF(day, '2026-11-20 23:00', '2026-11-21')", 1),
        ("CASE WHEN 'a' LIKE '[^b-z]' THEN 1 ELSE 0 END", 1), ("CAST('12' AS int) + 1", 13),
        ("(SELECT MAX(a) FROM t)", 3),
        ("CONVERT(int, 2.9)", 2), ("2 * (3 + 4) - 1", 13), ("- (1 - 3)", 2), ("@@TRANCOUNT", 0), ("~5", -6),
        ("{fn LENGTH('abc')}", 3),
    ]
    TEXTS = [
        ("'a' + 'b' + 'c'", "abc"), ("'a' + CONVERT(varchar(5), 12)", "a12"),
        ("CONVERT(varchar(10), CAST('2026-11-20' AS datetime), 101)", "11/20/2026"),
        ("LEFT('abcd', 2) + RIGHT('abcd', 1)", "abd"), ("SUBSTRING('abcd', 2, 2)", "bc"),
        ("UPPER('a') + LOWER('B')", "Ab"),
        ("REPLACE('aXa', 'x', 'b')", "aba"),
        ("CONVERT(varchar(30), DATEADD(month, 1, '2026-01-31'), 120)", "2026-02-28 00:00:00"),
        ("(SELECT MAX(b) + '!' FROM t)", "three!"), ("COALESCE(NULL, 'x')", "x"),
        ("'O''Neil [x] \"y\"'", "O'Neil [x] \"y\""),
        ("{ts '2026-11-20 14:03:05'}", "2026-11-20 14:03:05"), ("N'\u20ac'", "\u20ac"), ("STR(12.345, 6, 2)", " 12.35"),
    ]

    def setUp(self):
        super().setUp()
        self.run_all("CREATE TABLE t (a int, b varchar(20), d datetime)",
                     "INSERT INTO t VALUES (1, 'One', '2026-11-20') "
                     "INSERT INTO t VALUES (3, 'three', '11/21/26 1:00 PM')")

    def test_expressions_that_give_numbers(self):
        for expression, value in self.NUMBERS:
            with self.subTest(expression):
                self.assertEqual(self.number(f"SELECT CAST({expression} AS int)"), value)

    def test_expressions_that_give_texts(self):
        for expression, value in self.TEXTS:
            with self.subTest(expression):
                self.assertEqual(self.text(f"SELECT {expression}"), value)

    def test_conditions(self):
        for condition, count in [("b = 'ONE  '", 1),
                                 ("d = '20261120'", 1), ("d > '2026-11-21 12:00'", 1), ("b LIKE 't%'", 1),
                                 ("d BETWEEN '11/20/26' AND '11/22/26'", 2), ("b IN ('one', 'three')", 2),
                                 ("a <> 1 AND NOT b = 'x'", 1),
                                 ("EXISTS (SELECT * FROM t u WHERE u.a = t.a + 2)", 1),
                                 ("[t].[a] = 1 OR dbo.t.a = 3", 2)]:
            with self.subTest(condition):
                self.assertEqual(self.number(f"SELECT COUNT(*) FROM dbo.t (NOLOCK) WHERE {condition}"), count)

    def test_select_forms(self):
        for text, value in [("SELECT TOP 1 a FROM t ORDER BY a DESC", 3), ("SELECT 'x' = a FROM t WHERE b = 'one'", 1),
                            ("SELECT x = a, b y FROM t WHERE b = 'one'", 1),
                            ("SELECT u.a FROM test.dbo.t u JOIN t v ON u.a = v.a ORDER BY 1", 1),
                            ("SELECT a FROM (SELECT TOP 1 a FROM t ORDER BY a DESC) q", 3),
                            ("SELECT SUM(a) FROM t GROUP BY b HAVING SUM(a) > 1", 3)]:
            with self.subTest(text):
                self.assertEqual(self.number(text), value)

    def test_variables_loops_and_conditions(self):
        self.assertEqual(self.number("DECLARE @i int, @s int SELECT @i = 0, @s = 0 WHILE @i < 10 BEGIN SET @i = @i + 1 "
                                     "IF @i % 2 = 0 CONTINUE IF @i > 7 BREAK SET @s = @s + @i END SELECT @s"), 16)

    def test_identity_numbers_are_told_and_never_given_again(self):
        self.run_all("CREATE TABLE c (id int IDENTITY(10, 1) PRIMARY KEY, a int)")
        answer = self.client.batch("INSERT INTO c (a) VALUES (1) SELECT 'Id' = @@IDENTITY")
        self.assertEqual((answer.columns[0][0], answer.value()[:2]), ("Id", b"\x01\x0a"))
        self.run_all("DELETE c", "BEGIN TRAN INSERT INTO c VALUES (1) ROLLBACK", "INSERT c VALUES (2)")
        self.assertEqual(self.number("SELECT id FROM c"), 12)

    def test_identity_is_null_after_a_table_without_one(self):
        self.run_all("INSERT INTO t (a) VALUES (5)")
        self.assertIsNone(self.client.batch("SELECT @@IDENTITY").value())

    def test_timestamp_changes_with_its_row(self):
        self.run_all("CREATE TABLE v (a int, stamp timestamp)", "INSERT INTO v VALUES (1)")
        first = self.client.batch("SELECT stamp FROM v").value()
        self.run_all("UPDATE v SET a = 2")
        self.assertLess(first, self.client.batch("SELECT stamp FROM v").value())

    def test_long_literals_come_back_whole(self):
        for text in ["x" * 9000, "\u20ac" * 5000, "\u0416" * 5000]:
            self.assertEqual(self.text(f"SELECT N'{text}'"), text)
            self.assertEqual(self.text(f"SELECT '{text}' + ''"), text)

    def test_narrow_text_is_as_many_bytes_in_an_image(self):
        self.run_all("CREATE TABLE pictures (x image)", "INSERT INTO pictures VALUES ('ab')")
        self.assertEqual(self.client.batch("SELECT x FROM pictures").value(), b"ab")

    def test_objects_are_listed(self):
        self.assertEqual(self.text("SELECT name FROM sysobjects WHERE type = 'U' AND name = 'T'"), "t")
        self.assertIsNone(self.number("SELECT OBJECT_ID('none')"))

    def test_select_into_views_and_temporary_tables(self):
        self.run_all("SELECT a, b INTO #mine FROM t", "CREATE VIEW big AS SELECT a, d FROM t WHERE a > 1")
        self.assertEqual(self.number("SELECT COUNT(*) FROM #mine"), 2)
        self.assertEqual(self.client.batch("SELECT d FROM big").columns[0][1], 0x6F)
        other = Client(self.port)
        self.assertEqual(other.batch("SELECT * FROM #mine").errors[0][0], 208)
        other.close()


class FailuresTest(ServerTest):
    NUMBERS = [
        ("SELECT * FROM none", 208), ("SELECT none FROM t", 207), ("INSERT INTO t (none) VALUES (1)", 207),
        ("INSERT INTO t (id, a) VALUES (1, 1)", 544), ("INSERT INTO t (a) VALUES (NULL)", 515),
        ("INSERT INTO t (a) VALUES (1)", 2627),
        ("INSERT INTO t (a, s) VALUES (2, 'abcd')", 8152), ("INSERT INTO t (a) VALUES ('x')", 245),
        ("INSERT INTO t (a) VALUES (3000000000)", 8115), ("INSERT INTO t (a, d) VALUES (2, 'x')", 241),
        ("INSERT INTO t (a, f) VALUES (2, 99)", 547), ("INSERT INTO t (a, k) VALUES (2, 0)", 547),
        ("SELECT 1 / 0", 8134),
        ("SELECT 1 / (1 - 1)", 8134), ("SELECT CAST('x' AS int)", 245), ("SELECT CAST(300 AS tinyint)", 8115),
        ("SELEC", 2812),
        ("SELECT FROM WHERE", 102), ("SELECT (1", 102), ("SELECT 'open", 105), ("EXEC none", 2812),
        ("SELECT @none", 137),
        ("CREATE TABLE t (a int)", 2714), ("DROP TABLE none", 3701), ("COMMIT", 3902), ("ROLLBACK", 3903),
        ("SELECT none(1)", 195),
        ("INSERT INTO t VALUES (1)", 213), ("SELECT x.id FROM t x, t y WHERE id = 1", 209),
        ("RAISERROR ('own', 16, 1)", 50000),
        ("DECLARE @a int DECLARE @a int", 134), ("CREATE TABLE u (a nothing)", 2715),
    ]

    def test_failures_have_their_numbers_and_leave_the_connection(self):
        self.run_all("CREATE TABLE p (id int PRIMARY KEY)",
                     "CREATE TABLE t (id int IDENTITY PRIMARY KEY, a int NOT NULL UNIQUE, s varchar(3), d datetime, "
                     "f int REFERENCES p (id), k int CHECK (k > 0))", "INSERT INTO t (a) VALUES (1)")
        for text, number in self.NUMBERS:
            with self.subTest(text):
                self.assertEqual([error for error, _ in self.client.batch(text).errors], [number])
                self.assertEqual(self.number("SELECT 1"), 1)
