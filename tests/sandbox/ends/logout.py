"""logout.py READY COMMAND...: runs a program in a desktop session of its own, and logs out once READY is there, as a
session manager does: all programs may save themselves, and then they end. Exits with the program's status."""

import ctypes
import os
import pathlib
import select
import subprocess
import sys
import time

ice = ctypes.CDLL("libICE.so.6")
sm = ctypes.CDLL("libSM.so.6")
pointer, integer, text = ctypes.c_void_p, ctypes.c_int, ctypes.c_char_p
Told = ctypes.CFUNCTYPE(integer, pointer, pointer, pointer)


class Callbacks(ctypes.Structure):
    """SmsCallbacks: ten functions, each with what it is called with first."""
    _fields_ = [(f"{kind}{i}", Told if kind == "call" else pointer) for i in range(10) for kind in ("call", "data")]


clients = []
done = False


def register(client, _, previous):
    sm.SmsGenerateClientID.restype = text
    sm.SmsRegisterClientReply.argtypes = [pointer, text]
    sm.SmsRegisterClientReply(client, sm.SmsGenerateClientID(ctypes.c_void_p(client)))
    clients.append(client)
    return 1


def save_yourself_done(client, *_):
    global done
    done = True
    return 1


CALLS = [Told(register)] + [Told(lambda *_: 1) for _ in range(4)] + [Told(save_yourself_done)] + [Told(lambda *_: 1) for _ in range(4)]
New = ctypes.CFUNCTYPE(integer, pointer, pointer, ctypes.POINTER(ctypes.c_ulong), ctypes.POINTER(Callbacks), pointer)
Anyone = ctypes.CFUNCTYPE(integer, pointer)


@New
def new_client(client, _, mask, callbacks, __):
    mask[0] = 0x3FF
    for i, call in enumerate(CALLS):
        setattr(callbacks[0], f"call{i}", call)
    return 1


anyone = Anyone(lambda _: 1)
error = ctypes.create_string_buffer(256)
sm.SmsInitialize.argtypes = [text, text, New, pointer, Anyone, integer, text]
if not sm.SmsInitialize(b"logout", b"1", new_client, None, anyone, 256, error):
    sys.exit(f"no session: {error.value.decode()}")
count, listeners = integer(), ctypes.POINTER(pointer)()
if not ice.IceListenForConnections(ctypes.byref(count), ctypes.byref(listeners), 256, error):
    sys.exit(f"no session: {error.value.decode()}")
for i in range(count.value):
    ice.IceSetHostBasedAuthProc(ctypes.c_void_p(listeners[i]), anyone)
ice.IceComposeNetworkIdList.restype = text
names = ice.IceComposeNetworkIdList(count, listeners)

process = subprocess.Popen(sys.argv[2:], env=os.environ | {"SESSION_MANAGER": names.decode()})
doors = {ice.IceGetListenConnectionNumber(ctypes.c_void_p(listeners[i])): listeners[i] for i in range(count.value)}
lines = {}
ice.IceAcceptConnection.restype = pointer
step = "starting"
while process.poll() is None:
    for ready in select.select([*doors, *lines], [], [], 0.1)[0]:
        if ready in doors:
            connection = ice.IceAcceptConnection(ctypes.c_void_p(doors[ready]), ctypes.byref(integer()))
            if connection:
                lines[ice.IceConnectionNumber(ctypes.c_void_p(connection))] = connection
        elif ice.IceProcessMessages(ctypes.c_void_p(lines[ready]), None, None) != 0:
            del lines[ready]
    if step == "starting" and clients and pathlib.Path(sys.argv[1]).exists():
        for client in clients:  # SmSaveBoth at a shutdown, where any question may be asked
            sm.SmsSaveYourself(ctypes.c_void_p(client), 2, 1, 2, 0)
        step, done = "saving", False
    elif step == "saving" and done:
        for client in clients:
            sm.SmsSaveComplete(ctypes.c_void_p(client))
            sm.SmsDie(ctypes.c_void_p(client))
        step = "ending"
if step != "ending":
    sys.exit(f"it was {step} when it ended")
sys.exit(process.returncode)
