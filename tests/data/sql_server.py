"""A stand-in for SQL Server: its protocol (TDS 7.4) in front of an SQLite file, so that a real driver can be driven.

usage: sql_server.py DATABASE [CERTIFICATE KEY]

Prints its port, then a line of JSON for each login. Lets in the user sa with the password secret. With a certificate
every link is encrypted, without one none. Statements come in the server's SQL; the little of it that SQLite does not
know is turned.
"""
import json
import os
import re
import socket
import sqlite3
import ssl
import struct
import sys
import threading

PRELOGIN, REPLY, BATCH, RPC, ATTENTION, MANAGER, LOGIN = 0x12, 0x04, 0x01, 0x03, 0x06, 0x0E, 0x10
NVARCHAR, NTEXT, INTN, FLTN, BITN, DATETIMN = 0xE7, 0x63, 0x26, 0x6D, 0x68, 0x6F
COLLATION = bytes([4, 8, 0xD0, 0, 0])  # Chinese_PRC_CI_AS


class Link:
    """Packets over a socket, inside TLS once it is begun."""

    def __init__(self, connection):
        self.connection = connection
        self.tls = None

    def raw(self, size):
        data = b""
        while len(data) < size:
            part = self.connection.recv(size - len(data))
            if not part:
                raise EOFError
            data += part
        return data

    def bytes(self, size):
        if not self.tls:
            return self.raw(size)
        data = b""
        while len(data) < size:
            try:
                data += self.tls.read(size - len(data))
            except ssl.SSLWantReadError:
                self.arriving.write(self.raw_some())
        return data

    def raw_some(self):
        data = self.connection.recv(65536)
        if not data:
            raise EOFError
        return data

    def message(self):
        data = b""
        while True:
            kind, last, size = struct.unpack(">BBH4x", self.bytes(8))
            data += self.bytes(size - 8)
            if last & 1:
                return kind, data

    def send(self, data, kind=REPLY):
        packets = b""
        for at in range(0, max(len(data), 1), 4088):
            part = data[at:at + 4088]
            packets += struct.pack(">BBHHBB", kind, at + 4088 >= len(data), len(part) + 8, 0, 1, 0) + part
        if self.tls:
            self.tls.write(packets)
            packets = self.leaving.read()
        self.connection.sendall(packets)

    def begin_tls(self, certificate, key):
        """The handshake goes to and fro in packets, what follows does without them."""
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(certificate, key)
        context.maximum_version = ssl.TLSVersion.TLSv1_2
        self.arriving, self.leaving = ssl.MemoryBIO(), ssl.MemoryBIO()
        tls = context.wrap_bio(self.arriving, self.leaving, server_side=True)
        while True:
            try:
                tls.do_handshake()
                break
            except ssl.SSLWantReadError:
                if self.leaving.pending:
                    self.send(self.leaving.read(), PRELOGIN)
                self.arriving.write(self.message()[1])
        if self.leaving.pending:
            self.send(self.leaving.read(), PRELOGIN)
        self.tls = tls


def utf16(text):
    return text.encode("utf-16-le")


def short_text(text):
    return struct.pack("B", len(utf16(text)) // 2) + utf16(text)


def change(kind, new, old=b"\0"):
    return struct.pack("<BHB", 0xE3, len(new) + len(old) + 1, kind) + new + old


def done(token, status=0, rows=0):
    """0xFD, 0xFE, 0xFF: of a batch, of a procedure, of a statement in one, which more follows."""
    return struct.pack("<BHHQ", token, status | (token == 0xFF), 0, rows)


def error(number, text):
    body = struct.pack("<iBBH", number, 1, 16, len(utf16(text)) // 2) + utf16(text) + b"\0\0" + struct.pack("<i", 1)
    return struct.pack("<BH", 0xAA, len(body)) + body


class Parameters:
    """The parameters of a call, one after the other."""

    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, form):
        values = struct.unpack_from("<" + form, self.data, self.at)
        self.at += struct.calcsize("<" + form)
        return values[0] if len(values) == 1 else values

    def part(self, size):
        self.at += size
        return self.data[self.at - size:self.at]

    def next(self):
        self.part(2 * self.take("B") + 1)
        kind = self.take("B")
        if kind == NVARCHAR:
            longest, _ = self.take("H"), self.part(5)
            if longest == 0xFFFF:
                return self.chunks()
            size = self.take("H")
            return None if size == 0xFFFF else self.part(size).decode("utf-16-le")
        if kind == NTEXT:
            self.part(9)
            size = self.take("i")
            return None if size < 0 else self.part(size).decode("utf-16-le")
        if kind not in (INTN, FLTN, BITN):
            raise ValueError(f"a parameter of the type {kind:#x}")
        self.part(1)
        size = self.take("B")
        if not size:
            return None
        return self.take({(FLTN, 8): "d", (INTN, 8): "q", (INTN, 4): "i"}.get((kind, size), "b"))

    def follows(self):
        return self.data[self.at:self.at + 1] in (b"\xff", b"\x80")

    def chunks(self):
        if self.take("Q") == 0xFFFFFFFFFFFFFFFF:
            return None
        text = b""
        while size := self.take("I"):
            text += self.part(size)
        return text.decode("utf-16-le")


class Session:
    def __init__(self, link, path):
        self.link = link
        self.database = sqlite3.connect(path, timeout=10, isolation_level=None)
        self.is_set_up = False
        self.prepared = [None]
        self.kinds = {}
        for (table,) in self.database.execute("select name from sqlite_master where type = 'table'").fetchall():
            for column in self.database.execute(f"pragma table_info({table})"):
                self.kinds[column[1]] = column[2].split("(")[0]

    def run(self, text, values):
        """Gives the names and kinds of columns and the rows, or the number of rows that changed."""
        if re.match("set ", text, re.I):
            return None, 0
        if not self.is_set_up:
            raise sqlite3.OperationalError("the session has no settings")
        if "information_schema.columns" in text:
            text = ("select c.name as column_name, c.type as data_type, t.type = 'table' from sqlite_master t "
                    "join pragma_table_info(t.name) c where t.name = ?")
        elif "sys.indexes" in text:
            text = ("select substr(name, length(tbl_name) + 5) from sqlite_master where type = 'index' and "
                    "sql like 'create unique%' and tbl_name = ?")
        for form, turned in ((r"(update|delete) top \(1\)", r"\1"), (r"with ?\(\w+\)", ""), (r"@P\d+", "?"),
                             (r"cast\((\w+) as varbinary\(max\)\)", r"\1"),
                             (r"cast\(cast\(\? as nvarchar\(max\)\) as varbinary\(max\)\)", "?")):
            text = re.sub(form, turned, text, flags=re.I)
        cursor = self.database.execute(text, values)
        if not cursor.description:
            return None, max(cursor.rowcount, 0)
        rows = cursor.fetchall()
        columns = []
        for i, described in enumerate(cursor.description):
            known = next((row[i] for row in rows if row[i] is not None), "")
            kind = self.kinds.get(described[0], {int: "INTEGER", float: "REAL"}.get(type(known), "TEXT"))
            columns.append((described[0], kind))
        return columns, rows

    @staticmethod
    def type_of(kind, isLong):
        return {"REAL": bytes([FLTN, 8]), "INTEGER": bytes([INTN, 8]), "BOOLEAN": bytes([BITN, 1]),
                "DATE": bytes([DATETIMN, 8])}.get(
                    kind, struct.pack("<BH", NVARCHAR, 0xFFFF if isLong else 8000) + COLLATION)

    def cell(self, kind, isLong, value):
        if kind in ("REAL", "INTEGER", "BOOLEAN", "DATE"):
            if value is None:
                return b"\0"
            if kind == "DATE":
                days = self.database.execute("select julianday(?) - julianday('1900-01-01')", [value]).fetchone()[0]
                return struct.pack("<BiI", 8, int(days), 0)
            return struct.pack({"REAL": "<Bd", "INTEGER": "<Bq", "BOOLEAN": "<BB"}[kind],
                               1 if kind == "BOOLEAN" else 8, value)
        data = utf16(value or "")
        if isLong:
            return b"\xff" * 8 if value is None else struct.pack("<QI", len(data), len(data)) + data + b"\0" * 4 * bool(data)
        return b"\xff\xff" if value is None else struct.pack("<H", len(data)) + data

    def result(self, text, values, token):
        try:
            columns, rows = self.run(text, values)
        except sqlite3.Error as refusal:
            number = 2601 if "UNIQUE" in str(refusal) else 8114 if "CHECK" in str(refusal) else 208
            return error(number, str(refusal)) + done(token, 2)
        if columns is None:
            return done(token, 0x10, rows)
        longs = [any(isinstance(row[i], str) and len(utf16(row[i])) > 8000 for row in rows)
                 for i in range(len(columns))]
        reply = struct.pack("<BH", 0x81, len(columns))
        for (name, kind), isLong in zip(columns, longs):
            reply += struct.pack("<IH", 0, 9) + self.type_of(kind, isLong) + short_text(name)
        for row in rows:
            reply += b"\xd1" + b"".join(self.cell(kind, isLong, value)
                                        for (_, kind), isLong, value in zip(columns, longs, row))
        return reply + done(token, 0x10, len(rows))

    def calls(self, data):
        """One or more calls of procedures, which a mark separates."""
        parameters = Parameters(data)
        reply = self.call(parameters)
        while parameters.follows():
            parameters.part(1)
            reply += self.call(parameters)
        return reply

    def call(self, parameters):
        mark, procedure, _ = parameters.take("HHH")
        if mark != 0xFFFF:
            raise ValueError("a procedure by its name")
        if procedure == 15:  # sp_unprepare
            parameters.next()
            return struct.pack("<Bi", 0x79, 0) + done(0xFE)
        handle = None
        if procedure == 2:  # sp_cursoropen of what has no rows, which runs at once
            _, text = parameters.next(), parameters.next()
            for _ in range(3):
                parameters.next()
            return self.result(text, [], 0xFF) + struct.pack("<Bi", 0x79, 0) + done(0xFE)
        if procedure == 10:  # sp_executesql
            text, _ = parameters.next(), parameters.next()
        elif procedure == 12:  # sp_execute
            text = self.prepared[parameters.next()]
        else:  # sp_prepare, sp_prepexec
            parameters.next()
            _, text = parameters.next(), parameters.next()
            handle = len(self.prepared)
            self.prepared.append(text)
        reply = b""
        values = []
        while parameters.at < len(parameters.data) and not parameters.follows():
            values.append(parameters.next())
        if procedure != 11:
            reply = self.result(text, values, 0xFF)
        reply += struct.pack("<Bi", 0x79, 0)
        if handle is not None:
            reply += struct.pack("<BHBBIHBBBi", 0xAC, 0, 0, 1, 0, 0, INTN, 4, 4, handle)
        return reply + done(0xFE)

    def manage(self, data):
        """Begins, commits or rolls back; a commit may begin the next at once."""
        request, more = struct.unpack_from("<H", data)[0], data[2:]
        reply = b""
        mark = struct.pack("<BQ", 8, 1)
        if request in (7, 8):
            if self.database.in_transaction:
                self.database.execute("commit" if request == 7 else "rollback")
            reply += change(9 if request == 7 else 10, b"\0", mark)
            begins = len(more) > 1 and bool(more[1 + 2 * more[0]] & 1)
        else:
            begins = request == 5
        if begins:
            self.database.execute("begin")
            reply += change(8, mark)
        return reply + done(0xFD)

    def serve(self):
        while True:
            kind, data = self.link.message()
            if kind == ATTENTION:
                self.link.send(done(0xFD, 0x20))
                continue
            data = data[struct.unpack_from("<I", data)[0]:]
            if kind == BATCH:
                text = data.decode("utf-16-le")
                # Settings last only when they come by themselves, and nothing must come before them.
                self.is_set_up |= "set dateformat ymd" in text
                self.link.send(self.result(text, [], 0xFD))
            else:
                self.link.send(self.calls(data) if kind == RPC else self.manage(data))


def let_in(link, certificate, key):
    greeting = link.message()[1]
    at = 0
    while greeting[at] != 1:
        at += 5
    encryption = greeting[struct.unpack_from(">H", greeting, at + 1)[0]]
    link.send(bytes([0, 0, 11, 0, 6, 1, 0, 17, 0, 1, 0xFF, 12, 0, 0, 0, 0, 0, 1 if certificate else 2]))
    heard = {"encryption": encryption}
    try:
        if certificate:
            link.begin_tls(certificate, key)
        login = link.message()[1]
    except (EOFError, ssl.SSLError, ConnectionError):
        return print(json.dumps(heard), flush=True)

    def field(at, hidden=False):
        start, size = struct.unpack_from("<HH", login, at)
        data = login[start:start + 2 * size]
        if hidden:
            data = bytes(((c ^ 0xA5) << 4 | (c ^ 0xA5) >> 4) & 0xFF for c in data)
        return data.decode("utf-16-le")

    heard |= {"user": field(40), "password": field(44, True), "application": field(48), "database": field(68)}
    print(json.dumps(heard), flush=True)
    if (heard["user"], heard["password"]) != ("sa", "secret"):
        link.send(error(18456, "Login failed for user") + done(0xFD, 2))
        return False
    name = short_text("Microsoft SQL Server") + bytes([12, 0, 8, 0])
    link.send(change(1, short_text(heard["database"])) + change(7, bytes([5]) + COLLATION) +
              struct.pack("<BHB", 0xAD, len(name) + 5, 1) + bytes([0x74, 0, 0, 4]) + name +
              change(4, short_text("4096"), short_text("4096")) + done(0xFD))
    return True


def serve(connection, path, certificate=None, key=None):
    link = Link(connection)
    try:
        if let_in(link, certificate, key):
            Session(link, path).serve()
    except (EOFError, ConnectionError):
        pass
    finally:
        connection.close()


def main():
    listener = socket.create_server(("127.0.0.1", 0))
    print(listener.getsockname()[1], flush=True)
    # Who started it closes its input at the end.
    threading.Thread(target=lambda: (sys.stdin.read(), os._exit(0)), daemon=True).start()
    while True:
        connection, _ = listener.accept()
        threading.Thread(target=serve, args=(connection, *sys.argv[1:]), daemon=True).start()


main()
