#!/usr/bin/python3
"""A session of ncclient: PORT USER KEY. Prints what it read, one "name: value" per line."""
import re
import sys

from ncclient import manager
from ncclient.operations import RPCError

OC = "http://openconfig.net/yang/lldp"
port, user, key = sys.argv[1:]


def edit(content):
    return (
        '<config xmlns="urn:ietf:params:xml:ns:netconf:base:1.0">'
        f'<lldp xmlns="{OC}">{content}</lldp></config>'
    )


def texts(reply, path):
    steps = "/".join(f"{{{OC}}}{step}" for step in path.split("/"))
    return ",".join(e.text for e in reply.data_ele.iterfind(".//" + steps))


with manager.connect(
    host="127.0.0.1", port=int(port), username=user, key_filename=key,
    hostkey_verify=False, look_for_keys=False, allow_agent=False, timeout=30,
) as m:
    print("session:", "numbered" if int(m.session_id) > 0 else m.session_id)
    print("candidate:", ":candidate" in m.server_capabilities)

    everything = m.get()
    print("neighbors:", texts(everything, "neighbor/state/system-name"))
    one = m.get(("subtree", f'<lldp xmlns="{OC}"><interfaces><interface><name>eth1</name>'
                            "</interface></interfaces></lldp>"))
    print("one:", texts(one, "interface/name"))
    by_xpath = m.get(("xpath", ({"oc": OC}, "/oc:lldp/oc:interfaces/oc:interface[oc:name='eth2']/oc:config")))
    print("by-xpath:", texts(by_xpath, "interface/name"))
    config = m.get_config("running", ("subtree", f'<lldp xmlns="{OC}"><config><system-name/></config></lldp>'))
    print("name:", texts(config, "config/system-name"))

    changes = '<netconf-config-change xmlns="urn:ietf:params:xml:ns:yang:ietf-netconf-notifications"/>'
    m.create_subscription(filter=("subtree", changes))
    with m.locked("candidate"):
        m.edit_config(target="candidate", config=edit("<config><system-name>by-ncclient</system-name></config>"),
                      default_operation="merge", test_option="test-then-set",
                      error_option="rollback-on-error")
        m.validate("candidate")
        m.commit()
    config = m.get_config("running", ("subtree", f'<lldp xmlns="{OC}"><config><system-name/></config></lldp>'))
    print("committed:", texts(config, "config/system-name"))
    told = m.take_notification(timeout=20).notification_xml
    print("told:", re.search(r"<target[^>]*>([^<]*)<", told).group(1).replace("oc-lldp:", ""))

    try:
        m.edit_config(target="running", config=edit("<config><nonsense>1</nonsense></config>"))
        print("refused: no")
    except RPCError as error:
        print("refused:", error.tag)

    m.edit_config(target="candidate", config=edit("<config><system-name>taken-back</system-name></config>"))
    m.commit(confirmed=True, timeout="60")
    m.cancel_commit()
    config = m.get_config("running", ("subtree", f'<lldp xmlns="{OC}"><config><system-name/></config></lldp>'))
    print("cancelled:", texts(config, "config/system-name"))

    schema = m.get_schema("openconfig-lldp")
    print("schema:", re.match(r"\s*module (\S+)", schema.data).group(1))
print("end: closed")
