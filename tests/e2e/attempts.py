#!/usr/bin/env python3
"""Tries what the options of a hardened service forbid, each thing in a process of its own, and writes to a file, as JSON,
what came of each: "done", the name of an error, or how the process ended. Nothing that is tried takes privileges: where
nothing is forbidden, a call goes through or fails for another reason than a forbidden one."""

import ctypes
import errno
import json
import mmap
import os
import platform
import socket
import sys
import tempfile

libc = ctypes.CDLL(None, use_errno=True)


def call(number, *arguments):
    """A system call by its number on x86-64."""
    if libc.syscall(number, *arguments) < 0:
        code = ctypes.get_errno()
        raise OSError(code, os.strerror(code))


def new_privileges():
    with open("/proc/self/status") as status:
        if "NoNewPrivs:\t1\n" in status:
            raise PermissionError(errno.EPERM, "no new privileges")


def open_socket(family, kind=socket.SOCK_DGRAM):
    return lambda: socket.socket(family, kind).close()


def writable_code():
    mmap.mmap(-1, mmap.PAGESIZE, prot=mmap.PROT_READ | mmap.PROT_WRITE | mmap.PROT_EXEC).close()


def code_that_was_written():
    memory = mmap.mmap(-1, mmap.PAGESIZE)
    address = ctypes.addressof(ctypes.c_char.from_buffer(memory))
    if libc.mprotect(ctypes.c_void_p(address), mmap.PAGESIZE, mmap.PROT_READ | mmap.PROT_EXEC) != 0:
        code = ctypes.get_errno()
        raise OSError(code, os.strerror(code))


def call_of_32_bits():
    """getpid of the other architecture, by machine code in a file, so that no written page becomes code."""
    with tempfile.TemporaryFile() as file:
        file.write(b"\xb8\x14\x00\x00\x00\xcd\x80\xc3")  # mov eax, 20; int 0x80; ret
        file.flush()
        libc.mmap.restype = ctypes.c_void_p
        address = libc.mmap(None, ctypes.c_size_t(mmap.PAGESIZE), mmap.PROT_READ | mmap.PROT_EXEC, mmap.MAP_PRIVATE, file.fileno(),
                            ctypes.c_long(0))
        answer = ctypes.CFUNCTYPE(ctypes.c_int)(address)()
        if answer < 0:
            raise OSError(-answer, os.strerror(-answer))


def real_time():
    """With a priority that is wrong in any case."""
    try:
        os.sched_setscheduler(0, os.SCHED_FIFO, os.sched_param(0))
    except OSError as error:
        if error.errno != errno.EINVAL:
            raise


def set_user_bit():
    with tempfile.NamedTemporaryFile() as file:
        os.chmod(file.name, 0o4755)


def expecting(code, number, *arguments):
    """A system call with arguments that have it fail so, before anybody asks for privileges."""
    def tried():
        try:
            call(number, *arguments)
        except OSError as error:
            if error.errno != code:
                raise
    return tried


def change_group():
    with tempfile.TemporaryFile() as file:
        os.fchown(file.fileno(), -1, os.getgid())


NOWHERE = b"/no/such/folder"
NEW_USER, NEW_MOUNTS = 0x10000000, 0x00020000
ATTEMPTS = {
    "new privileges": new_privileges,
    "socket AF_INET": open_socket(socket.AF_INET),
    "socket AF_INET6": open_socket(socket.AF_INET6),
    "socket AF_NETLINK": open_socket(socket.AF_NETLINK, socket.SOCK_RAW),
    "socket AF_UNIX": open_socket(socket.AF_UNIX),
    # With a bit that no namespace has: a machine may keep users from making them, or a changed root may.
    "user namespace": expecting(errno.EINVAL, 272, NEW_USER | 1),
    "mount namespace": expecting(errno.EINVAL, 272, NEW_MOUNTS | 1),
    "entering a namespace": expecting(errno.EBADF, 308, -1, 0),
    "writable code": writable_code,
    "code that was written": code_that_was_written,
    "32-bit system call": call_of_32_bits,
    "personality": lambda: call(135, 0x0040000),  # without random addresses
    "real-time scheduling": real_time,
    "set-user-id bit": set_user_bit,
    "tracing": lambda: call(101, 0, 0, 0, 0),
    "mounting": expecting(errno.ENOENT, 165, b"none", NOWHERE, b"tmpfs", 0, None),
    "changing the root": expecting(errno.ENOENT, 161, NOWHERE),
    "setting the clock": expecting(errno.EINVAL, 227, 0, (ctypes.c_long * 2)(-1, -1)),
    "kernel keyrings": lambda: call(250, 0, -3, 1),
    "changing a group": change_group,
    "landlock": lambda: call(444, None, 0, 1),
    "seccomp": expecting(errno.EFAULT, 317, 1, 0, None),
}


def outcome(attempt):
    """In a process of its own, which may be killed."""
    reader, writer = os.pipe()
    child = os.fork()
    if child == 0:
        text = "done"
        try:
            attempt()
        except OSError as error:
            text = errno.errorcode.get(error.errno, str(error))
        finally:
            os.write(writer, text.encode())
            os._exit(0)
    os.close(writer)
    with os.fdopen(reader) as told:
        text = told.read()
    status = os.waitpid(child, 0)[1]
    return text or f"signal {os.WTERMSIG(status)}"


def main():
    assert platform.machine() == "x86_64"
    found = {name: outcome(attempt) for name, attempt in ATTEMPTS.items()}
    with open(sys.argv[1] + ".new", "w") as file:
        json.dump(found, file)
    os.rename(sys.argv[1] + ".new", sys.argv[1])


if __name__ == "__main__":
    main()
