"""Reads, sets and streams a device with pygnmi: HOST PORT CA CERTIFICATE KEY. Prints a line for each step."""

import json
import logging
import sys

from pygnmi.client import gNMIclient

logging.disable(logging.CRITICAL)  # pygnmi logs errors on standard output

NAME = "/lldp/config/system-name"

host, port, authority, certificate, key = sys.argv[1:]


def client():
    return gNMIclient(target=(host, int(port)), path_root=authority, path_cert=certificate, path_key=key)


def values(response):
    return [update["val"] for notification in response["notification"] for update in notification["update"]]


def names(stream, count):
    found = []
    for message in stream:
        for update in message.get("update", {}).get("update", []):
            found.append(update["val"])
        if len(found) == count:
            return found
    return found


with client() as device:
    capabilities = device.capabilities()
    print("version:", capabilities["gnmi_version"])
    print("encodings:", ",".join(capabilities["supported_encodings"]))
    for encoding in ("json", "json_ietf", "proto"):
        print(f"{encoding}:", json.dumps(values(device.get(path=[NAME], encoding=encoding))))
    print("all:", len(values(device.get(path=["/lldp"], encoding="json"))))
    device.set(update=[(NAME, "updated")], encoding="json")
    print("update:", values(device.get(path=[NAME], encoding="json"))[0])
    device.set(replace=[("/lldp/config", {"system-name": "replaced"})], encoding="json_ietf")
    print("replace:", json.dumps(values(device.get(path=["/lldp/config"], encoding="json"))[0], sort_keys=True))
    device.set(delete=[NAME])
    try:
        device.get(path=[NAME], encoding="json")
        print("delete: is still there")
    except Exception as error:  # pygnmi's own, whose class differs from version to version
        print("delete:", "no data there" in str(error))
    device.set(update=[(NAME, "streamed")], encoding="json")
    once = {"subscription": [{"path": NAME}], "mode": "once", "encoding": "proto"}
    print("once:", names(device.subscribe2(subscribe=once), 1)[0])

with client() as device:
    stream = {"subscription": [{"path": NAME, "mode": "on_change"}], "mode": "stream", "encoding": "proto"}
    changes = device.subscribe2(subscribe=stream)
    print("first:", names(changes, 1)[0])
    with client() as other:
        other.set(update=[(NAME, "changed")], encoding="json")
    print("then:", names(changes, 1)[0])
    changes.close()
