"""What the server's own tests stand on: a server in a folder of its own, and a client."""
import tempfile
import threading
import unittest

from client import Client
from server import Server


class ServerTest(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.server = Server(0, self.folder.name, ["test", "other"], "sa", "x", lock_seconds=1)
        self.port = self.server.server_address[1]
        self.thread = threading.Thread(target=self.server.serve_forever, kwargs={"poll_interval": 0.01})
        self.thread.start()
        self.client = Client(self.port)

    def tearDown(self):
        self.client.close()
        self.server.shutdown()
        self.thread.join()
        self.server.server_close()
        self.folder.cleanup()

    def run_all(self, *texts):
        for text in texts:
            self.assertEqual(self.client.batch(text).errors, [], text)

    def number(self, text):
        """The whole number that a query gives."""
        answer = self.client.batch(text)
        self.assertEqual(answer.errors, [], text)
        value = answer.value()
        return value and int.from_bytes(value, "little", signed=True)

    def text(self, text):
        answer = self.client.batch(text)
        self.assertEqual(answer.errors, [], text)
        kind = answer.columns[0][1]
        return answer.value().decode("utf-16le" if kind in (0xE7, 0xEF, 0x63) else "cp1252")
