"""The virtual cabinet with its page, as a process for tests."""

import re
import subprocess
import sys
import tempfile
import threading
import urllib.error
import urllib.request


class Cabinet:
    """`log`: the file that gets what the cabinet and the game print, the terminal if there is none."""

    def __init__(self, out, *arguments, log=None):
        self.drive = tempfile.TemporaryDirectory(prefix="lilyhop-page-")
        self.process = subprocess.Popen(
            [f"{out}/cabinet", "--page", "0", "--quiet", "--drive", self.drive.name, *arguments],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=log, text=True)
        self.greeting = ""
        while not (address := re.search(r"http://\S+", self.greeting)):
            self.greeting += self.process.stdout.readline() or sys.exit("the cabinet doesn't start")
        self.address = address.group(0)
        # A full pipe would stop the game.
        threading.Thread(target=self.pass_on, args=(log or sys.stdout,), daemon=True).start()

    def pass_on(self, log):
        for line in self.process.stdout:
            log.write(line)
            log.flush()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def do(self, line):
        """Gives the cabinet a command, or asks it for a reading. Returns its answer."""
        request = urllib.request.Request(self.address + "command", line.encode(), method="POST")
        try:
            with urllib.request.urlopen(request, timeout=30) as reply:
                return reply.read().decode()
        except urllib.error.HTTPError as error:
            raise ValueError(f"{line}: {error.read().decode().strip()}") from error
        except urllib.error.URLError as error:
            if not isinstance(error.reason, BrokenPipeError):
                raise
            return self.do(line)  # it was closed before it had read the command

    def close(self):
        """Asks it to end. Returns its exit code."""
        self.process.terminate()
        self.process.wait(timeout=30)
        self.drive.cleanup()
        return self.process.returncode
