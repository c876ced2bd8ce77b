"""The virtual cabinet with its page, as a process for tests."""

import re
import subprocess
import tempfile


class Cabinet:
    def __init__(self, out, *arguments):
        self.drive = tempfile.TemporaryDirectory(prefix="lilyhop-page-")
        self.process = subprocess.Popen(
            [f"{out}/cabinet", "--page", "0", "--drive", self.drive.name, *arguments],
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        self.address = next(match.group(0) for line in self.process.stdout
                            if (match := re.search(r"http://\S+", line)))

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Asks it to end; its exit code."""
        self.process.terminate()
        self.process.communicate(timeout=30)
        self.drive.cleanup()
        return self.process.returncode
