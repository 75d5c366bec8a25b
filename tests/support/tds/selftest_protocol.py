"""The protocol: logins, tokens, transactions of several clients, calls, attention."""
import struct

from client import Client
from fixture import ServerTest

MORE, ERROR, COUNT, ATTENTION = 1, 2, 16, 32


def int_parameter(value):
    return bytes([0x26, 4, 4]) + struct.pack("<i", value)


def wide_parameter(text):
    data = text.encode("utf-16le")
    return b"\xe7" + struct.pack("<H", 8000) + bytes(5) + struct.pack("<H", len(data)) + data


class LoginTest(ServerTest):
    def refused(self, *arguments):
        client = Client(self.port, *arguments)
        client.close()
        return client.login.errors

    def test_right_user_password_and_database_come_in(self):
        self.assertEqual(self.client.login.errors, [])

    def test_wrong_user_and_password_are_refused(self):
        self.assertEqual(self.refused("sa", "wrong"), [(18456, "Login failed for user 'sa'.")])
        self.assertEqual(self.refused("eve", "x"), [(18456, "Login failed for user 'eve'.")])

    def test_login_that_was_made_comes_in_until_it_is_dropped(self):
        self.run_all("CREATE LOGIN Eve WITH PASSWORD = 'it''s'")
        self.assertEqual(self.client.batch("CREATE LOGIN eve WITH PASSWORD = 'x'").errors[0][0], 15025)
        self.assertEqual(self.refused("eve", "x"), [(18456, "Login failed for user 'eve'.")])
        eve = Client(self.port, "eve", "it's")
        self.assertEqual(eve.batch("SELECT SUSER_SNAME()").errors, [])
        eve.close()
        self.run_all("DROP LOGIN eve")
        self.assertEqual(self.client.batch("DROP LOGIN eve").errors[0][0], 15151)
        self.assertEqual(self.refused("eve", "it's"), [(18456, "Login failed for user 'eve'.")])

    def test_unknown_database_is_refused(self):
        self.assertEqual(self.refused("sa", "x", "none")[0][0], 4060)

    def test_nothing_runs_before_the_login(self):
        client = Client(self.port, "sa", "wrong")
        self.assertEqual(client.batch("SELECT 1").results, [])
        client.close()

    def test_use_changes_the_database(self):
        self.run_all("CREATE TABLE here (a int)", "USE other")
        self.assertEqual(self.client.batch("SELECT * FROM here").errors[0][0], 208)
        self.assertEqual(self.client.batch("USE none").errors[0][0], 911)


class TokensTest(ServerTest):
    def statuses(self, text):
        return [done.status for done in self.client.batch(text).dones]

    def test_only_the_last_done_says_that_nothing_follows(self):
        self.assertEqual(self.statuses("SELECT 1 SELECT 2 SELECT 3"), [COUNT | MORE, COUNT | MORE, COUNT])

    def test_error_in_the_middle_ends_its_statement(self):
        self.run_all("CREATE TABLE t (a int NOT NULL)")
        self.assertEqual(self.statuses("INSERT INTO t VALUES (NULL) SELECT 1"), [ERROR | MORE, COUNT])

    def test_error_about_a_name_ends_the_batch(self):
        self.assertEqual(self.statuses("SELECT * FROM none SELECT 1"), [ERROR])

    def test_batch_without_results_still_ends(self):
        for text in ["", "-- nothing", "SET NOCOUNT ON", "DECLARE @a int"]:
            self.assertEqual(self.statuses(text), [0], text)

    def test_procedure_ends_by_its_own_token(self):
        self.run_all("CREATE PROCEDURE p AS SELECT 1 SELECT 2")
        answer = self.client.batch("EXEC p")
        self.assertEqual([(done.token, done.status & MORE) for done in answer.dones], [(0xFF, 1), (0xFF, 1), (0xFE, 0)])
        self.assertEqual(answer.return_status, 0)

    def test_nocount_leaves_the_counts_away(self):
        self.run_all("CREATE TABLE t (a int)")
        self.assertEqual(self.statuses("SET NOCOUNT ON INSERT INTO t VALUES (1)"), [0])
        self.assertEqual([done.count for done in self.client.batch("INSERT INTO t VALUES (1), (2)").dones], [2])

    def test_metadata_says_where_columns_come_from(self):
        self.run_all("CREATE TABLE t (id int IDENTITY PRIMARY KEY, a int)")
        answer = self.client.batch("SELECT id, a AS b, a + 1 AS c FROM t")
        self.assertEqual([(name, flags) for name, _, flags in answer.columns], [("id", 0x10), ("b", 0x09), ("c", 0x01)])
        self.assertEqual(answer.browse[0], b"\x01\x01\x00t\x00")
        self.assertEqual(answer.browse[1], b"\x01\x01\x00" + b"\x02\x01\x20\x01a\x00" + b"\x03\x00\x04")

    def test_print_is_a_message(self):
        self.assertEqual(self.client.batch("PRINT 'a' + 'b'").messages, [(0, "ab")])


class TransactionsTest(ServerTest):
    def setUp(self):
        super().setUp()
        self.run_all("CREATE TABLE t (a int)")
        self.other = Client(self.port)

    def tearDown(self):
        self.other.close()
        super().tearDown()

    def seen(self):
        return self.number("SELECT COUNT(*) FROM t")

    def test_others_see_what_is_committed(self):
        self.other.batch("BEGIN TRAN INSERT INTO t VALUES (1)")
        self.assertEqual(self.seen(), 0)
        self.other.batch("COMMIT")
        self.assertEqual(self.seen(), 1)

    def test_column_that_another_dropped_is_gone_at_once(self):
        self.run_all("ALTER TABLE t ADD b int", "INSERT INTO t VALUES (1, 2)")
        self.assertEqual(len(self.other.batch("SELECT * FROM t").columns), 2)
        self.run_all("ALTER TABLE t DROP COLUMN a")
        self.assertEqual(len(self.other.batch("SELECT * FROM t").columns), 1)

    def test_transaction_that_only_read_sees_what_others_commit(self):
        self.run_all("BEGIN TRAN")
        self.assertEqual(self.seen(), 0)
        self.other.batch("INSERT INTO t VALUES (1)")
        self.assertEqual(self.seen(), 1)

    def test_disconnecting_rolls_back(self):
        self.other.batch("BEGIN TRAN INSERT INTO t VALUES (1)")
        self.other.close()
        self.run_all("INSERT INTO t VALUES (2)")     # waits for the lock
        self.assertEqual(self.seen(), 1)

    def test_second_writer_becomes_the_victim(self):
        self.other.batch("BEGIN TRAN INSERT INTO t VALUES (1)")
        self.assertEqual(self.client.batch("BEGIN TRAN INSERT INTO t VALUES (2)").errors[0][0], 1205)
        self.assertEqual(self.number("SELECT @@TRANCOUNT"), 0)

    def test_nested_transactions_count(self):
        self.run_all("BEGIN TRAN BEGIN TRAN INSERT INTO t VALUES (1) COMMIT")
        self.assertEqual(self.number("SELECT @@TRANCOUNT"), 1)
        self.run_all("ROLLBACK")
        self.assertEqual((self.number("SELECT @@TRANCOUNT"), self.seen()), (0, 0))

    def test_savepoint_takes_back_a_part(self):
        self.run_all("BEGIN TRAN INSERT INTO t VALUES (1) SAVE TRAN s INSERT INTO t VALUES (2) ROLLBACK TRAN s COMMIT")
        self.assertEqual(self.seen(), 1)

    def test_failure_in_a_transaction_leaves_it_open(self):
        self.run_all("CREATE TABLE u (a int PRIMARY KEY)", "BEGIN TRAN INSERT INTO u VALUES (1)")
        self.client.batch("INSERT INTO u VALUES (1)")
        self.run_all("COMMIT")
        self.assertEqual(self.number("SELECT COUNT(*) FROM u"), 1)


class CallsTest(ServerTest):
    def test_return_status_and_output_parameters(self):
        self.run_all("CREATE PROCEDURE p @a int, @b int OUTPUT, @c varchar(5) = 'z' AS "
                     "SELECT @c SET @b = @a + @b RETURN 7")
        answer = self.client.call("p", ("", 0, int_parameter(1)), ("", 1, int_parameter(2)))
        self.assertEqual((answer.return_status, answer.value()), (7, b"z"))
        self.assertEqual(answer.return_values, [("", struct.pack("<i", 3))])
        answer = self.client.call("p", ("@b", 1, int_parameter(5)), ("@a", 0, int_parameter(1)))
        self.assertEqual(answer.return_values, [("@b", struct.pack("<i", 6))])

    def test_parameters_that_do_not_fit(self):
        self.run_all("CREATE PROCEDURE p @a int AS RETURN")
        one = ("", 0, int_parameter(1))
        self.assertEqual(self.client.call("p").errors[0][0], 201)
        self.assertEqual(self.client.call("p", one, one).errors[0][0], 8144)
        self.assertEqual(self.client.call("p", ("@x", 0, int_parameter(1))).errors[0][0], 8145)
        self.assertEqual(self.client.call("none").errors[0][0], 2812)

    def test_prepared_statement_runs_until_it_is_closed(self):
        handle = ("", 1, bytes([0x26, 4, 0]))
        prepared = self.client.call("sp_prepare", handle, ("", 0, wide_parameter("@P1 int")),
                                    ("", 0, wide_parameter("SELECT @P1 AS x")))
        self.assertEqual(prepared.columns[0][:2], ("x", 0x26))
        number = ("", 0, int_parameter(int.from_bytes(prepared.return_values[0][1], "little")))
        for value in (5, 6):
            answer = self.client.call("sp_execute", number, ("", 0, int_parameter(value)))
            self.assertEqual(answer.value(), struct.pack("<i", value))
        self.client.call("sp_unprepare", number)
        self.assertEqual(self.client.call("sp_execute", number, ("", 0, int_parameter(1))).errors[0][0], 8179)

    def test_procedures_call_each_other(self):
        self.run_all("CREATE PROCEDURE inner_one @a int OUTPUT AS SET @a = @a * 2 RETURN 1",
                     "CREATE PROCEDURE outer_one AS DECLARE @x int, @r int SET @x = 4 "
                     "EXEC @r = inner_one @x OUTPUT SELECT @x + @r")
        self.assertEqual(self.number("EXEC outer_one"), 9)

    def test_parameter_may_have_a_default(self):
        self.run_all("CREATE PROCEDURE p @a int = 3, @b varchar(5) = NULL AS SELECT @a")
        self.assertEqual((self.number("EXEC p"), self.number("EXEC p @b = x"), self.number("EXEC p 4")), (3, 3, 4))
        self.run_all("ALTER PROCEDURE p AS SELECT 5")
        self.assertEqual(self.number("EXEC p"), 5)

    def test_malformed_call_is_refused(self):
        self.assertEqual(self.client.call("p", ("", 0, b"")).errors[0][0], 8009)
        self.assertEqual(self.number("SELECT 1"), 1)


class AttentionTest(ServerTest):
    ENDLESS = "WITH g (n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM g) SELECT "

    def test_attention_ends_what_runs(self):
        for text in ["WAITFOR DELAY '10:00:00'", self.ENDLESS + "COUNT(*) FROM g",
                     self.ENDLESS + "CAST(n AS int) FROM g",
                     "WHILE 1 = 1 DECLARE @a int"]:
            with self.subTest(text):
                self.client.send(1, text.replace("DECLARE @a int", "SET NOCOUNT ON").encode("utf-16le"))
                self.client.attention()
                dones = self.client.answer().dones
                self.assertEqual(dones[-1].status, ATTENTION)
                self.assertEqual(self.number("SELECT 1"), 1)

    def test_attention_after_the_end_is_acknowledged_alone(self):
        self.number("SELECT 1")
        self.client.attention()
        self.assertEqual([done.status for done in self.client.answer().dones], [ATTENTION])
