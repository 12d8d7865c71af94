"""Confirmed commits with pygnmi: HOST PORT CA CERTIFICATE KEY. Prints a line for each step.

pygnmi 0.8.15 speaks gNMI 0.8, whose Extension has no field for commits. Protobuf sends unknown fields as they came, so
the extension is made with messages of its own and read into pygnmi's.
"""

import logging
import sys
import time

import pygnmi.client
from google.protobuf import descriptor_pb2, descriptor_pool, duration_pb2, message_factory
from pygnmi.client import gNMIclient
from pygnmi.spec.v080.gnmi_ext_pb2 import Extension

logging.disable(logging.CRITICAL)  # pygnmi logs errors on standard output
pygnmi.client.get_gnmi_extension = lambda ext=None: ext  # takes an Extension rather than a dictionary

NAME = "/lldp/config/system-name"
PATIENCE = 20  # seconds

host, port, authority, certificate, key = sys.argv[1:]


def extension_class():
    """The class of gnmi_ext.Extension with the field of gNMI 0.10 for commits."""
    field = descriptor_pb2.FieldDescriptorProto
    file = descriptor_pb2.FileDescriptorProto(
        name="commit_extension.proto",
        package="commits",
        syntax="proto3",
        dependency=[duration_pb2.DESCRIPTOR.name],
    )

    def message(name, **fields):
        made = file.message_type.add(name=name)
        for label, (number, of) in fields.items():
            kind = field.TYPE_MESSAGE if of else field.TYPE_STRING
            made.field.add(name=label, number=number, label=field.LABEL_OPTIONAL, type=kind, type_name=of)

    message("Nothing")
    message("Limited", rollback_duration=(1, ".google.protobuf.Duration"))
    message(
        "Commit",
        id=(1, None),
        commit=(2, ".commits.Limited"),
        confirm=(3, ".commits.Nothing"),
        cancel=(4, ".commits.Nothing"),
        set_rollback_duration=(5, ".commits.Limited"),
    )
    message("Extension", commit=(4, ".commits.Commit"))
    pool = descriptor_pool.Default()
    pool.Add(file)
    return message_factory.GetMessageClass(pool.FindMessageTypeByName("commits.Extension"))


WithCommit = extension_class()


def commit_extension(identity, action, seconds=None):
    made = WithCommit()
    made.commit.id = identity
    chosen = getattr(made.commit, action)
    chosen.SetInParent()
    if seconds is not None:
        chosen.rollback_duration.FromSeconds(seconds)
    return Extension.FromString(made.SerializeToString())


def name():
    answer = device.get(path=[NAME], encoding="json")
    return answer["notification"][0]["update"][0]["val"]


def commit(identity, value, seconds=None):
    device.set(update=[(NAME, value)], encoding="json", extension=commit_extension(identity, "commit", seconds))


def act(identity, action, seconds=None):
    device.set(extension=commit_extension(identity, action, seconds))


def refusal(call, *arguments):
    try:
        call(*arguments)
        return "none"
    except Exception as error:  # pygnmi's own, whose class differs from version to version
        return str(error.orig_exc.code().name)


def name_that_comes_back(wanted):
    deadline = time.monotonic() + PATIENCE
    while name() != wanted and time.monotonic() < deadline:
        time.sleep(0.1)
    return name()


with gNMIclient(target=(host, int(port)), path_root=authority, path_cert=certificate, path_key=key) as device:
    commit("a", "first")
    print("committed:", name())
    print("another commit:", refusal(commit, "b", "second"))
    print("without an id:", refusal(lambda: device.set(update=[(NAME, "second")], encoding="json")))
    print("of another id:", refusal(act, "b", "confirm"))
    act("a", "confirm")
    print("confirmed:", name())
    print("confirmed again:", refusal(act, "a", "confirm"))

    commit("b", "second")
    print("to be cancelled:", name())
    act("b", "cancel")
    print("cancelled:", name())

    commit("c", "third", 1)
    print("not confirmed in time:", name_that_comes_back("first"))

    commit("d", "fourth", 600)
    print("no time at all:", refusal(act, "d", "set_rollback_duration", 0))
    print("to be shortened:", name())
    act("d", "set_rollback_duration", 1)
    print("not confirmed in the shorter time:", name_that_comes_back("first"))

    commit("e", "fifth", 1)
    act("e", "set_rollback_duration", 600)
    time.sleep(2)
    print("with more time:", name())
    act("e", "confirm")
    print("confirmed at last:", name())
