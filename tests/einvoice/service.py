#!/usr/bin/env python3
"""A stand-in of the e-invoicing service, for tests and for training: nothing leaves this machine.

  service.py [--port N] [--keep FOLDER] [--until-input-ends]

It answers on 127.0.0.1 and prints "port N" as its first line; without --port the system chooses
one. With --keep each request lies in the folder as it came, and the documents taken are known again
at the next start. With --until-input-ends it stops when its standard input is closed: it outlives
no test.

  POST /token               form: client_id, client_secret     {"access_token": ...}
  GET  /tin?idType=&idValue=                                   {"tin": ...}
  POST /invoice /creditnote /consolidated /selfbill            {"data":[{"uuid": ...}]}
  PUT  /cancel/<uuid>       {"reason": ...}                    {"data":[{"uuid": ...}]}
  POST /status              {"uuid": [...]}                    {"data":[{"uuid","status","url"}]}

All but /token want the token. A body that is not strict JSON is refused, and so is a document that
lacks a member. A refusal is {"message": ...}. The first question after a document finds it
"Submitted", later ones "Valid", or "Invalid" where its addresses name a state that is none.

What the service does beside that is asked for at /stand-in:

  PUT /stand-in/plan   {"faults": [{"path": "/invoice", "after": 3, "times": 1, "kind": "cut"}],
                        "token_lives": 10, "twice": "refuse", "statuses": ["Valid"], "url_times": 1}
       replaces the plan. A fault strikes the requests whose path begins with its own, after the
       first so many; "times" 0 is from there on. A token works for token_lives requests. "twice" is
       what becomes of a document number that was taken before: "new" uuid, "same" one, "refuse".
  GET  /stand-in/received   all requests: number, method, path, headers, body and what was answered
  GET  /stand-in/lines      the same, a line each, parted by tabs: number, method, path, token, the
                            document or uuid it is about, fault, the uuid that was answered,
                            and 1 when the service has done what was asked
  GET  /stand-in/body?n=N   the body of request N as it came
  PUT  /stand-in/forget     nothing was received and no document is known

The kinds of faults; those marked * happen after the document was taken:
  message       an error instead of the answer            500     a page of a broken server
  401           the token is refused                      slow    * the answer, "seconds" later
  blank         * a blank behind the colon of the uuid    short   * a uuid that is too short
  broken        * the answer with a comma too many        cut     * half of the answer, then silence
  drop          the connection ends before the answer     drop-taken   * the same
  empty         * an answer of no characters
  echo          an error that says what was asked: token, address and body
"""

import argparse
import hashlib
import json
import os
import socket
import sys
import threading
import time
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from urllib.parse import parse_qs, unquote, urlsplit

DOCUMENTS = {"/invoice": "invoice", "/creditnote": "credit note",
             "/consolidated": "consolidated invoice", "/selfbill": "self-billed invoice"}
STATES = {"%02d" % code for code in range(1, 18)}
UUID_LENGTH = 26


class Refusal(Exception):
    def __init__(self, text, status=400):
        super().__init__(text)
        self.status = status


def strict_json(text):
    """As a reader that forgives nothing: no member twice, no NaN."""

    def members(pairs):
        keys = [key for key, _ in pairs]
        if len(set(keys)) != len(keys):
            raise ValueError("a member stands twice")
        return dict(pairs)

    def constant(name):
        raise ValueError(name + " is no value")

    return json.loads(text, object_pairs_hook=members, parse_constant=constant)


def wanted(holder, members, kind):
    for member in members:
        if not isinstance(holder, dict) or member not in holder:
            raise Refusal("A %s lacks %s" % (kind, member))


def check_document(path, body):
    if not isinstance(body, dict) or not isinstance(body.get("documents"), list) or len(body["documents"]) != 1:
        raise Refusal("documents must hold one document")
    document, kind = body["documents"][0], DOCUMENTS[path]
    wanted(document, ["document_number", "document_currency", "supplier", "tax", "total_tax_exclusive",
                      "total_tax_inclusive", "total_payable", "items"], kind)
    if path == "/creditnote":
        wanted(document, ["e_invoice_references"], kind)
    if path in ("/invoice", "/selfbill"):
        wanted(document, ["customer"], kind)
    if path == "/consolidated" and "customer" in document:
        raise Refusal("A consolidated invoice names no customer")
    for party in ("supplier", "customer"):
        if party in document:
            wanted(document[party], ["tin", "identity_number", "identity_type", "registration_name",
                                     "telephone", "email", "address"], kind)
            wanted(document[party]["address"], ["postal_code", "city", "state_code", "country_code",
                                                "addresses"], kind)
    for item in document["items"]:
        wanted(item, ["id", "quantity", "total_amount_excluding_tax", "classification_code",
                      "description", "unit_price", "tax"], kind)
    if not document["document_number"]:
        raise Refusal("A %s has no number" % kind)
    return document


class Service:
    def __init__(self, folder):
        self.folder = folder
        self.lock = threading.Lock()
        self.forget()
        if folder:
            os.makedirs(folder, exist_ok=True)
            self.recall()

    def forget(self):
        self.plan = {}
        self.struck = {}      # fault -> requests of its path so far
        self.received = []
        self.taken = {}       # uuid -> what is known of it
        self.numbers = {}     # document number -> uuid given last
        self.tokens = {}      # token -> requests it has served
        self.given = 0        # uuids and tokens so far

    def recall(self):
        path = os.path.join(self.folder, "documents.jsonl")
        if os.path.exists(path):
            with open(path, encoding="utf-8") as lines:
                for line in lines:
                    known = json.loads(line)
                    self.taken[known["uuid"]] = known
                    self.numbers[known["number"]] = known["uuid"]
            self.given = len(self.taken) * 2 + 1000

    def keep(self, name, mode, text):
        if self.folder:
            with open(os.path.join(self.folder, name), mode, encoding="utf-8", errors="surrogateescape") as file:
                file.write(text)

    def new_code(self, kind, length):
        self.given += 1
        digest = hashlib.sha256(("%s %d" % (kind, self.given)).encode()).digest()
        return "".join("0123456789ABCDEFGHJKMNPQRSTVWXYZ"[byte % 32] for byte in digest)[:length]

    def fault(self, path):
        struck = None
        for index, fault in enumerate(self.plan.get("faults", [])):
            if not path.startswith(fault.get("path", "/")):
                continue
            seen = self.struck.get(index, 0)
            self.struck[index] = seen + 1
            after, times = fault.get("after", 0), fault.get("times", 1)
            if struck is None and seen >= after and (times == 0 or seen < after + times):
                struck = fault
        return struck

    def token(self, body):
        form = parse_qs(body)
        for name in ("client_id", "client_secret"):
            if not form.get(name):
                raise Refusal(name + " is missing", 401)
        if form.get("grant_type") != ["client_credentials"]:
            raise Refusal("grant_type must be client_credentials")
        if form["client_secret"] == ["wrong"]:
            raise Refusal("The client is not known", 401)
        token = self.new_code("token", 32)
        self.tokens[token] = 0
        return {"access_token": token, "token_type": "Bearer", "expires_in": 3600}

    def want_token(self, headers):
        bearer = headers.get("Authorization", "")
        token = bearer[len("Bearer "):] if bearer.startswith("Bearer ") else ""
        if token not in self.tokens:
            raise Refusal("Unauthorized", 401)
        self.tokens[token] += 1
        lives = self.plan.get("token_lives", 0)
        if lives and self.tokens[token] > lives:
            raise Refusal("The token has expired", 401)

    def submit(self, path, body):
        document = check_document(path, body)
        number, twice = document["document_number"], self.plan.get("twice", "new")
        before = self.numbers.get(number)
        if before and twice == "refuse":
            raise Refusal("Document %s was submitted before" % number)
        if before and twice == "same":
            return {"data": [{"document_number": number, "uuid": before}]}
        uuid = self.new_code("uuid", UUID_LENGTH)
        states = [document[party]["address"]["state_code"] for party in ("supplier", "customer") if party in document]
        known = {"uuid": uuid, "number": number, "kind": DOCUMENTS[path], "asked": 0,
                 "good": all(state in STATES for state in states), "cancelled": False}
        self.taken[uuid] = known
        self.numbers[number] = uuid
        self.keep("documents.jsonl", "a", json.dumps(known) + "\n")
        return {"data": [{"document_number": number, "uuid": uuid}]}

    def cancel(self, path, body):
        uuid = unquote(path[len("/cancel/"):])
        if uuid not in self.taken:
            raise Refusal("No document %s" % uuid, 404)
        wanted(body, ["reason"], "cancellation")
        self.taken[uuid]["cancelled"] = True
        return {"data": [{"uuid": uuid, "status": "Cancelled"}]}

    def status(self, body):
        if not isinstance(body, dict) or not isinstance(body.get("uuid"), list) or not body["uuid"]:
            raise Refusal("uuid must be a list of uuids")
        found = []
        for uuid in body["uuid"]:
            known = self.taken.get(uuid)
            if known is None:
                raise Refusal("No document %s" % uuid, 404)
            final = "Valid" if known["good"] else "Invalid"
            statuses = self.plan.get("statuses", ["Submitted", final])
            status = statuses[min(known["asked"], len(statuses) - 1)]
            known["asked"] += 1
            if known["cancelled"]:
                status = "Cancelled"
            found.append({"uuid": uuid, "status": status,
                          "url": "https://e-invoice.example/%s/share/%s" % (uuid, uuid[::-1] * self.plan.get("url_times", 1))})
        return {"data": found}

    def answer(self, method, path, query, headers, body):
        if path == "/token":
            if method != "POST":
                raise Refusal("No such request", 404)
            return self.token(body)
        self.want_token(headers)
        if method == "GET" and path == "/tin":
            kind, value = (query.get(name, [""])[0] for name in ("idType", "idValue"))
            if kind not in ("NRIC", "PASSPORT", "BRN") or not value:
                raise Refusal("idType and idValue are required")
            return {"tin": ("C" if kind == "BRN" else "IG") + hashlib.sha256(value.encode()).hexdigest()[:11]}
        if headers.get("Content-Type") != "application/json":
            raise Refusal("The body must be application/json", 415)
        try:
            document = strict_json(body)
        except ValueError as error:
            raise Refusal("The body is no JSON: %s" % error) from error
        if method == "POST" and path in DOCUMENTS:
            return self.submit(path, document)
        if method == "PUT" and path.startswith("/cancel/"):
            return self.cancel(path, document)
        if method == "POST" and path == "/status":
            return self.status(document)
        raise Refusal("No such request", 404)


def line(note):
    about = ""
    try:
        body = json.loads(note["body"])
        about = body["documents"][0]["document_number"] if "documents" in body else body.get("uuid", [""])[0]
    except ValueError:
        pass
    fields = [str(note["number"]), note["method"], note["path"], note["headers"].get("Authorization", ""),
              about, note["fault"], note["uuid"], note["taken"]]
    return "\t".join(fields) + "\n"


def written(answer, blank):
    return json.dumps(answer, ensure_ascii=False, separators=(",", ": " if blank else ":"))


class Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    service = None

    def log_message(self, *_):
        pass

    def body(self):
        length = int(self.headers.get("Content-Length") or 0)
        return self.rfile.read(length).decode("utf-8", errors="surrogateescape")

    def reply(self, status, text, kind="application/json", part=1.0):
        data = text.encode("utf-8", errors="surrogateescape")
        head = "HTTP/1.1 %d %s\r\nContent-Type: %s; charset=utf-8\r\nContent-Length: %d\r\n\r\n" % (
            status, "OK" if status == 200 else "Trouble", kind, len(data))
        self.wfile.write(head.encode() + data[: int(len(data) * part)])
        if part < 1.0:
            self.hang_up()

    def hang_up(self):
        self.close_connection = True
        self.connection.shutdown(socket.SHUT_RDWR)

    def stand_in(self, method, path, query, body):
        service = self.service
        if (method, path) == ("PUT", "/stand-in/plan"):
            service.plan, service.struck = strict_json(body), {}
            return self.reply(200, "{}")
        if (method, path) == ("PUT", "/stand-in/forget"):
            service.forget()
            return self.reply(200, "{}")
        if (method, path) == ("GET", "/stand-in/received"):
            return self.reply(200, json.dumps(service.received))
        if (method, path) == ("GET", "/stand-in/lines"):
            return self.reply(200, "".join(line(note) for note in service.received), "text/plain")
        if (method, path) == ("GET", "/stand-in/body"):
            return self.reply(200, service.received[int(query["n"][0])]["body"], "text/plain")
        return self.reply(404, "{}")

    def handle_any(self, method):
        parts = urlsplit(self.path)
        path, query, body = parts.path, parse_qs(parts.query, keep_blank_values=True), self.body()
        if path.startswith("/stand-in/"):
            with self.service.lock:
                return self.stand_in(method, path, query, body)
        service = self.service
        with service.lock:
            fault = service.fault(path)
            kind = fault["kind"] if fault else ""
            note = {"number": len(service.received), "method": method, "path": self.path,
                    "headers": dict(self.headers.items()), "body": body, "fault": kind, "answer": None, "uuid": "", "taken": ""}
            service.received.append(note)
            service.keep("%04d-%s%s.txt" % (note["number"], method, path.replace("/", "-")), "w", body)
            status, answer = 200, None
            try:
                if kind == "message":
                    raise Refusal("The service cannot take it now")
                if kind == "401":
                    raise Refusal("Unauthorized", 401)
                if kind == "echo":
                    raise Refusal("%s %s %s" % (dict(self.headers.items()), self.path, body))
                if kind == "500":
                    return self.reply(500, "<html><body><h1>500 Internal Server Error</h1></body></html>", "text/html")
                if kind == "drop":
                    return self.hang_up()
                answer = service.answer(method, path, query, self.headers, body)
            except Refusal as refusal:
                status, answer = refusal.status, {"message": str(refusal)}
            if method != "GET" and "data" in answer:
                note["taken"] = "1"
                if kind not in ("cut", "drop-taken", "empty", "short"):
                    note["uuid"] = answer["data"][0]["uuid"]
            if kind == "short" and "data" in answer:
                answer["data"][0]["uuid"] = answer["data"][0]["uuid"][:9]
            text = "" if kind == "empty" else written(answer, kind == "blank")
            if kind == "broken":
                text = text.replace("{", "{,", 1)
            note["answer"] = text if kind not in ("cut", "drop-taken") else None
        if kind == "slow":
            time.sleep(fault.get("seconds", 1))
        if kind == "drop-taken":
            return self.hang_up()
        return self.reply(status, text, part=0.5 if kind == "cut" else 1.0)

    def do_GET(self):
        self.handle_any("GET")

    def do_POST(self):
        self.handle_any("POST")

    def do_PUT(self):
        self.handle_any("PUT")


class Server(ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64

    def server_bind(self):
        # The library asks here for the machine's name, which takes seconds where nobody knows it.
        self.socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self.socket.bind(self.server_address)
        self.server_address = self.socket.getsockname()
        self.server_name, self.server_port = "127.0.0.1", self.server_address[1]

    def process_request(self, request, client_address):
        request.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        super().process_request(request, client_address)

    def handle_error(self, request, client_address):
        if not isinstance(sys.exc_info()[1], OSError):  # who asked has hung up: no trouble of ours
            super().handle_error(request, client_address)


def main():
    options = argparse.ArgumentParser(description="A stand-in of the e-invoicing service")
    options.add_argument("--port", type=int, default=0)
    options.add_argument("--keep", metavar="FOLDER")
    options.add_argument("--until-input-ends", action="store_true")
    given = options.parse_args()
    Handler.service = Service(given.keep)
    server = Server(("127.0.0.1", given.port), Handler)
    print("port %d" % server.server_port, flush=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    try:
        if given.until_input_ends:
            sys.stdin.buffer.read()
        else:
            threading.Event().wait()
    except KeyboardInterrupt:
        pass


if __name__ == "__main__":
    main()
