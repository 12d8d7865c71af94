#include "device_generator.h"

namespace yfw::bench {
namespace {

void write_neighbor(std::ostream &to, unsigned interface, unsigned n) {
    const unsigned high = n >> 16 & 255;
    const unsigned middle = n >> 8 & 255;
    const unsigned low = n & 255;
    to << "<detail><interface-name>eth" << interface << "</interface-name><device-id>switch" << n
       << ".example.net</device-id><lldp-neighbor><device-id>switch" << n
       << ".example.net</device-id><chassis-id>0200." << high << '.' << middle << '.' << low
       << "</chassis-id><port-id-detail>eth1/0/" << n % 48
       << "</port-id-detail><hold-time>120</hold-time><detail><network-addresses><lldp-addr-entry><address>"
          "<address-type>ipv4</address-type><ipv4-address>10."
       << high << '.' << middle << '.' << low
       << "</ipv4-address></address></lldp-addr-entry></network-addresses><port-description>uplink " << n
       << " to the core</port-description><system-name>switch" << n
       << ".example.net</system-name><system-description>Switch software 7." << n % 10 << " build " << n
       << "</system-description><last-update>" << 1700000000 + n << "</last-update><age>" << n % 1000
       << "</age></detail><mib><combined-capabilities>1310740</combined-capabilities><chassis-id-sub-type>4"
          "</chassis-id-sub-type><port-id-sub-type>5</"
          "port-id-sub-type><org-def-tlv-list><lldp-org-def-tlv-entry>"
          "<oui>00:80:c2</oui><tlv-subtype>9</tlv-subtype><tlv-value>vlan"
       << n << "</tlv-value></lldp-org-def-tlv-entry></org-def-tlv-list></mib></lldp-neighbor></detail>\n";
}

void write_interface(std::ostream &to, unsigned i) {
    to << "<interface><interface-name>eth" << i
       << "</interface-name><tx-enabled>1</tx-enabled><rx-enabled>1</rx-enabled><interface-stats>"
          "<transmitted-packets>"
       << i << "</transmitted-packets><discarded-packets>0</discarded-packets><bad-packets>0</bad-packets>"
       << "<received-packets>" << 2 * i
       << "</received-packets><discarded-tl-vs>0</discarded-tl-vs><unrecognized-tl-vs>1</unrecognized-tl-vs>"
          "<transmit-failures>0</transmit-failures><last-clear>77</last-clear></interface-stats></interface>\n";
}

void write_statistics(std::ostream &to) {
    to << "<statistics><transmitted-packets>100</transmitted-packets><aged-out-entries>1</aged-out-entries>"
          "<discarded-packets>0</discarded-packets><bad-packets>0</bad-packets><received-packets>200"
          "</received-packets><discarded-tl-vs>0</discarded-tl-vs><unrecognized-tl-vs>3</unrecognized-tl-vs>"
          "<accepted-tl-vs>40</accepted-tl-vs><last-clear>77</last-clear></statistics>\n";
}

void write_node(std::ostream &to, const DeviceSize &size, unsigned node) {
    const unsigned first = node * size.interfaces / size.nodes;
    const unsigned last = (node + 1) * size.interfaces / size.nodes;
    const unsigned each = size.neighbors / size.interfaces;
    to << "<node><node-name>0/" << node << "/CPU0</node-name><neighbors><details>\n";
    for (unsigned i = first; i < last; i++)
        for (unsigned k = 0; k < each; k++)
            write_neighbor(to, i, i * each + k);
    to << "</details></neighbors><interfaces>\n";
    for (unsigned i = first; i < last; i++)
        write_interface(to, i);
    to << "</interfaces>";
    write_statistics(to);
    to << "</node>\n";
}

} // namespace

void write_device(std::ostream &to, const DeviceSize &size) {
    to << "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper\"><global-lldp><lldp-info><chassis-id>"
          "02:00:00:00:00:01</chassis-id><chassis-id-sub-type>4</chassis-id-sub-type><system-name>core</"
          "system-name>"
          "</lldp-info></global-lldp><nodes>\n";
    for (unsigned node = 0; node < size.nodes; node++)
        write_node(to, size, node);
    to << "</nodes></lldp>\n<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\">\n";
    for (unsigned i = 0; i < size.interfaces; i++)
        to << "<interface-configuration><active>act</active><interface-name>eth" << i
           << "</interface-name><lldp "
              "xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"><enable>true</enable></lldp>"
              "</interface-configuration>\n";
    to << "</interface-configurations>\n";
}

} // namespace yfw::bench
