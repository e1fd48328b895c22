#!/usr/bin/env python3
"""An FTP server on loopback whose faults a test chooses.

  ftp_server.py ROOT [CERTIFICATE]

Account "me", password "p:a\"s's 1". With a certificate (PEM with its key) TLS is offered. It says
"port N" and ends with its input. A line there is the fault from now on:

  none            as a server should
  cut N           the line is gone once N bytes of a file have passed, in either direction
  full N          the disk is full once N bytes have come in
  keep            no file takes the place of another by a rename
  short N         what comes in is cut to N bytes, and nobody is told
  slow            64 KiB a tenth of a second
  deaf            no answer to any command
  readonly        nothing may be written

Each command that comes in is noted in ROOT.log as it came, without the password.
"""
import logging
import os
import sys
import threading
import time

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.filesystems import AbstractedFS, FilesystemError
from pyftpdlib.handlers import DTPHandler, FTPHandler
from pyftpdlib.servers import FTPServer

logging.basicConfig(level=logging.ERROR)
root, certificate = sys.argv[1], (sys.argv[2:] or [None])[0]
fault, limit = "none", 0
log = open(root + ".log", "a", encoding="utf-8", buffering=1)


def listen():
    global fault, limit
    for line in sys.stdin:
        words = line.split()
        fault, limit = words[0], int((words[1:] or ["0"])[0])
    os._exit(0)


def faulty(base):
    class Data(base):
        passed = 0

        # A client may greet on the line of a file before it says what it wants there.
        def readable(self):
            return getattr(self, "_ssl_accepting", False) or super().readable()

        def hold(self):
            if fault == "slow":
                time.sleep(0.1)

        def recv(self, size):
            self.hold()
            chunk = super().recv(65536 if fault == "slow" else size)
            self.passed += len(chunk)
            if fault == "cut" and self.passed > limit:
                self.cmd_channel.close()
                self.close()
                return b""
            if fault == "full" and self.passed > limit:
                self._resp = ("452 No space left on the disk.", logging.debug)
                self.close()
                return b""
            if fault == "short":
                chunk = chunk[: max(0, limit - (self.passed - len(chunk)))]
            return chunk

        def send(self, data):
            self.hold()
            if fault == "cut" and self.passed > limit:
                self.cmd_channel.close()
                self.close()
                return 0
            sent = super().send(data[:65536] if fault == "slow" else data)
            self.passed += sent
            return sent

    return Data


class Disk(AbstractedFS):
    def rename(self, source, target):
        if fault == "keep" and os.path.exists(target):
            raise FilesystemError("there is one of this name")
        super().rename(source, target)

    def open(self, name, mode):
        if fault == "readonly" and "r" not in mode:
            raise FilesystemError("no right")
        return super().open(name, mode)


def control(base, data):
    class Control(base):
        dtp_handler = data
        abstracted_fs = Disk
        use_sendfile = False  # a fault in the middle needs each piece by itself
        banner = "ready"

        def pre_process_command(self, line, cmd, arg):
            log.write(("PASS" if cmd == "PASS" else line) + "\n")
            if fault != "deaf":
                super().pre_process_command(line, cmd, arg)

    return Control


os.makedirs(root, exist_ok=True)
people = DummyAuthorizer()
people.add_user("me", "p:a\"s's 1", root, perm="elradfmw")
if certificate:
    from pyftpdlib.handlers import TLS_DTPHandler, TLS_FTPHandler

    handler = control(TLS_FTPHandler, faulty(TLS_DTPHandler))
    handler.certfile = certificate
else:
    handler = control(FTPHandler, faulty(DTPHandler))
handler.authorizer = people
handler.auth_failed_timeout = 0
server = FTPServer(("127.0.0.1", 0), handler)
threading.Thread(target=listen, daemon=True).start()
print("port", server.address[1], flush=True)
server.serve_forever()
