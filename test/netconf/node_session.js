// A session of the npm package: PORT USER KEY. Prints what it read, one "name: value" per line.
'use strict';
const fs = require('fs');
const netconf = require(process.env.NETCONF_PACKAGE);

const [port, user, key] = process.argv.slice(2);
const OC = 'http://openconfig.net/yang/lldp';
const client = new netconf.Client({
    host: '127.0.0.1', port: Number(port), username: user, pkey: fs.readFileSync(key, { encoding: 'utf8' })
});

const ask = (request) => new Promise((resolve, reject) =>
    client.rpc(request, (error, reply) => (error ? reject(error) : resolve(reply.rpc_reply))));
const lldp = (content) => ({ lldp: Object.assign({ $: { xmlns: OC } }, content) });
const filter = (content) => Object.assign({ $: { type: 'subtree' } }, lldp(content));
const name = async () => {
    const reply = await ask({ 'get-config': {
        source: { running: null }, filter: filter({ config: { 'system-name': null } }) } });
    return reply.data.lldp.config.system_name;
};

const session = async () => {
    await new Promise((resolve, reject) => client.open((error) => (error ? reject(error) : resolve())));
    console.log('session:', client.sessionID > 0 ? 'numbered' : client.sessionID);
    const all = await ask('get');
    console.log('interfaces:', all.data.lldp.interfaces.interface.map((each) => each.name).join(','));
    const one = await ask({ get: { filter: filter({ interfaces: { interface: { name: 'eth1' } } }) } });
    console.log('one:', one.data.lldp.interfaces.interface.name);
    console.log('name:', await name());
    await ask({ lock: { target: { candidate: null } } });
    await ask({ 'edit-config': {
        target: { candidate: null }, config: lldp({ config: { 'system-name': 'by-node' } }) } });
    console.log('uncommitted:', await name());
    await ask('commit');
    await ask({ unlock: { target: { candidate: null } } });
    console.log('committed:', await name());
    const refused = await ask({ 'edit-config': {
        target: { running: null }, config: lldp({ config: { nonsense: 1 } }) } }).catch((error) => error);
    console.log('refused:', refused.name);
    await new Promise((resolve, reject) => client.close((error) => (error ? reject(error) : resolve())));
    console.log('end: closed');
};

session().then(() => process.exit(0), (error) => {
    console.error(error);
    process.exit(1);
});
