"""Whole processes, measured."""

import os
import sys
import time


def timed(command):
    """Seconds from starting the process to its end."""
    silence = [(os.POSIX_SPAWN_OPEN, stream, os.devnull, os.O_WRONLY, 0) for stream in (1, 2)]
    start = time.perf_counter()
    process = os.posix_spawn(command[0], command, os.environ, file_actions=silence)
    _, status = os.waitpid(process, 0)
    seconds = time.perf_counter() - start
    if status != 0:
        sys.exit(f"failed: {' '.join(command)}")
    return seconds
