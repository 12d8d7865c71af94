"""Polls and samples with pygnmi: HOST PORT CA CERTIFICATE KEY. Prints a line for each step."""

import logging
import sys
import time

from pygnmi.client import gNMIclient

logging.disable(logging.CRITICAL)  # pygnmi logs errors on standard output

NAME = "/lldp/config/system-name"
SECOND = 10**9  # nanoseconds
PATIENCE = 20  # seconds

host, port, authority, certificate, key = sys.argv[1:]


def client():
    return gNMIclient(target=(host, int(port)), path_root=authority, path_cert=certificate, path_key=key)


def next_names(stream):
    """The names in the next message, which with a poll and at the beginning are those up to sync_response."""
    message = stream.get_update(timeout=PATIENCE)
    return [update["val"] for update in message.get("update", {}).get("update", [])]


def change(value):
    with client() as other:
        other.set(update=[(NAME, value)], encoding="json")


def samples(**how):
    subscription = {"path": NAME, "mode": "sample", "sample_interval": SECOND, **how}
    return {"subscription": [subscription], "mode": "stream", "encoding": "proto"}


change("at first")
with client() as device:
    polls = device.subscribe2(subscribe={"subscription": [{"path": NAME}], "mode": "poll", "encoding": "proto"})
    print("polled:", next_names(polls))
    print("polled again:", next_names(polls))
    change("between polls")
    time.sleep(0.5)
    print("told without a poll:", polls.peek())
    print("polled after a change:", next_names(polls))
    polls.close()

with client() as device:
    stream = device.subscribe2(subscribe=samples())
    print("current:", next_names(stream))
    start = time.monotonic()
    print("sampled:", next_names(stream), next_names(stream))
    print("in their time:", 1 <= time.monotonic() - start <= PATIENCE)
    change("between samples")
    deadline = time.monotonic() + PATIENCE
    names = next_names(stream)
    while names == ["between polls"] and time.monotonic() < deadline:
        names = next_names(stream)
    print("sampled after a change:", names)
    stream.close()

with client() as device:
    stream = device.subscribe2(subscribe=samples(suppress_redundant=True))
    print("current:", next_names(stream))
    time.sleep(2.5)
    print("sampled without a change:", stream.peek())
    change("no longer redundant")
    print("sampled after a change:", next_names(stream))
    stream.close()

with client() as device:
    stream = device.subscribe2(subscribe=samples(suppress_redundant=True, heartbeat_interval=2 * SECOND))
    print("current:", next_names(stream))
    print("with the heartbeat:", next_names(stream))
    stream.close()
