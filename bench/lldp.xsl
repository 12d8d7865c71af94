<?xml version="1.0" encoding="UTF-8"?>
<!-- The OpenConfig answer of a generated device as a stylesheet, for comparison. Of what the mapping does, it leaves out:
     types, base64 of TLVs, start-up times, text checks, capabilities other than bridge and router. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
    xmlns="http://openconfig.net/yang/lldp" xmlns:oc-lldp-types="http://openconfig.net/yang/lldp/types"
    xmlns:oper="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper" xmlns:cfg="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"
    xmlns:if="urn:tarvo:yang:Tarvo-QD-ifmgr-cfg" exclude-result-prefixes="oper cfg if">
  <xsl:output method="xml" indent="yes" omit-xml-declaration="yes"/>
  <xsl:key name="neighbors" match="oper:details/oper:detail" use="oper:interface-name"/>
  <xsl:key name="configured" match="if:interface-configuration" use="if:interface-name"/>

  <xsl:template match="/">
    <lldp>
      <xsl:apply-templates select="//oper:lldp-info"/>
      <interfaces>
        <xsl:apply-templates select="//oper:interfaces/oper:interface"/>
      </interfaces>
    </lldp>
  </xsl:template>

  <xsl:template match="oper:lldp-info">
    <state>
      <enabled><xsl:value-of select="boolean(//cfg:lldp[not(parent::if:*)]/cfg:enable = 'true')"/></enabled>
      <system-name><xsl:value-of select="oper:system-name"/></system-name>
      <chassis-id><xsl:value-of select="oper:chassis-id"/></chassis-id>
      <chassis-id-type><xsl:apply-templates select="oper:chassis-id-sub-type"/></chassis-id-type>
      <counters>
        <frame-in><xsl:value-of select="sum(//oper:statistics/oper:received-packets)"/></frame-in>
        <frame-out><xsl:value-of select="sum(//oper:statistics/oper:transmitted-packets)"/></frame-out>
        <frame-error-in><xsl:value-of select="sum(//oper:statistics/oper:bad-packets)"/></frame-error-in>
        <frame-discard><xsl:value-of select="sum(//oper:statistics/oper:discarded-packets)"/></frame-discard>
        <tlv-discard><xsl:value-of select="sum(//oper:statistics/oper:discarded-tl-vs)"/></tlv-discard>
        <tlv-unknown><xsl:value-of select="sum(//oper:statistics/oper:unrecognized-tl-vs)"/></tlv-unknown>
        <tlv-accepted><xsl:value-of select="sum(//oper:statistics/oper:accepted-tl-vs)"/></tlv-accepted>
        <entries-aged-out><xsl:value-of select="sum(//oper:statistics/oper:aged-out-entries)"/></entries-aged-out>
      </counters>
    </state>
  </xsl:template>

  <xsl:template match="oper:interfaces/oper:interface">
    <interface>
      <name><xsl:value-of select="oper:interface-name"/></name>
      <xsl:apply-templates select="key('configured', oper:interface-name)"/>
      <state>
        <name><xsl:value-of select="oper:interface-name"/></name>
        <enabled><xsl:value-of select="boolean(oper:tx-enabled = 1 or oper:rx-enabled = 1)"/></enabled>
        <xsl:apply-templates select="oper:interface-stats"/>
      </state>
      <neighbors>
        <xsl:apply-templates select="key('neighbors', oper:interface-name)/oper:lldp-neighbor"/>
      </neighbors>
    </interface>
  </xsl:template>

  <xsl:template match="if:interface-configuration">
    <config>
      <name><xsl:value-of select="if:interface-name"/></name>
      <enabled><xsl:value-of select="cfg:lldp/cfg:enable"/></enabled>
    </config>
  </xsl:template>

  <xsl:template match="oper:interface-stats">
    <counters>
      <frame-in><xsl:value-of select="oper:received-packets"/></frame-in>
      <frame-out><xsl:value-of select="oper:transmitted-packets"/></frame-out>
      <frame-error-in><xsl:value-of select="oper:bad-packets"/></frame-error-in>
      <frame-discard><xsl:value-of select="oper:discarded-packets"/></frame-discard>
      <tlv-discard><xsl:value-of select="oper:discarded-tl-vs"/></tlv-discard>
      <tlv-unknown><xsl:value-of select="oper:unrecognized-tl-vs"/></tlv-unknown>
      <last-clear><xsl:value-of select="oper:last-clear"/></last-clear>
      <frame-error-out><xsl:value-of select="oper:transmit-failures"/></frame-error-out>
    </counters>
  </xsl:template>

  <xsl:template match="oper:lldp-neighbor">
    <xsl:variable name="id" select="concat(oper:device-id, '#', oper:port-id-detail)"/>
    <neighbor>
      <id><xsl:value-of select="$id"/></id>
      <state>
        <system-name><xsl:value-of select="oper:detail/oper:system-name"/></system-name>
        <system-description><xsl:value-of select="oper:detail/oper:system-description"/></system-description>
        <chassis-id><xsl:value-of select="oper:chassis-id"/></chassis-id>
        <chassis-id-type><xsl:apply-templates select="oper:mib/oper:chassis-id-sub-type"/></chassis-id-type>
        <id><xsl:value-of select="$id"/></id>
        <age><xsl:value-of select="oper:detail/oper:age"/></age>
        <last-update><xsl:value-of select="oper:detail/oper:last-update"/></last-update>
        <ttl><xsl:value-of select="oper:hold-time"/></ttl>
        <port-id><xsl:value-of select="oper:port-id-detail"/></port-id>
        <port-id-type><xsl:apply-templates select="oper:mib/oper:port-id-sub-type"/></port-id-type>
        <port-description><xsl:value-of select="oper:detail/oper:port-description"/></port-description>
        <xsl:for-each select="oper:detail/oper:network-addresses/oper:lldp-addr-entry[1]/oper:address">
          <management-address><xsl:value-of select="oper:ipv4-address"/></management-address>
          <management-address-type><xsl:value-of select="oper:address-type"/></management-address-type>
        </xsl:for-each>
      </state>
      <custom-tlvs><xsl:apply-templates select="oper:mib/oper:org-def-tlv-list/*"/></custom-tlvs>
      <capabilities><xsl:apply-templates select="oper:mib/oper:combined-capabilities"/></capabilities>
    </neighbor>
  </xsl:template>

  <xsl:template match="oper:lldp-org-def-tlv-entry">
    <tlv>
      <type>127</type>
      <oui><xsl:value-of select="oper:oui"/></oui>
      <oui-subtype><xsl:value-of select="oper:tlv-subtype"/></oui-subtype>
      <state>
        <type>127</type>
        <oui><xsl:value-of select="oper:oui"/></oui>
        <oui-subtype><xsl:value-of select="oper:tlv-subtype"/></oui-subtype>
        <value><xsl:value-of select="oper:tlv-value"/></value>
      </state>
    </tlv>
  </xsl:template>

  <xsl:template match="oper:combined-capabilities">
    <xsl:call-template name="capability">
      <xsl:with-param name="bit" select="4"/>
      <xsl:with-param name="name" select="'oc-lldp-types:MAC_BRIDGE'"/>
    </xsl:call-template>
    <xsl:call-template name="capability">
      <xsl:with-param name="bit" select="16"/>
      <xsl:with-param name="name" select="'oc-lldp-types:ROUTER'"/>
    </xsl:call-template>
  </xsl:template>

  <xsl:template name="capability">
    <xsl:param name="bit"/>
    <xsl:param name="name"/>
    <xsl:if test="floor(. div 65536 div $bit) mod 2 = 1">
      <capability>
        <name><xsl:value-of select="$name"/></name>
        <state>
          <name><xsl:value-of select="$name"/></name>
          <enabled><xsl:value-of select="floor(. div $bit) mod 2 = 1"/></enabled>
        </state>
      </capability>
    </xsl:if>
  </xsl:template>

  <xsl:template match="oper:chassis-id-sub-type[. = 4]">MAC_ADDRESS</xsl:template>
  <xsl:template match="oper:port-id-sub-type[. = 5]">INTERFACE_NAME</xsl:template>
</xsl:stylesheet>
