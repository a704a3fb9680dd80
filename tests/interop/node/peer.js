// One interface to the packages: a BACnet/IP station whose functions return promises and whose values are plain JSON
// (see values.js). A failure rejects with {error: "class:code"}, {reason: number} (of a Reject or an Abort) or {failure: text}.
'use strict'

const { fromPackage, toPackage } = require('./values')

const ALL = 0xffffffff // of an array: no index
const NO_PRIORITY = 0
const EVERY_NETWORK = 0xffff

const PACKAGES = {
    'node-bacnet': { create: (options) => new (require('node-bacnet'))(options), callbacks: true },
    '@bacnet-js/client': { create: (options) => new (require('@bacnet-js/client').default)(options), callbacks: false },
}

// Both packages put what came into the text; a Reject is told as an Abort.
function failureOf({ message }) {
    const [, errorClass, code] = /^BacnetError\b.*Class:\D*(\d+).*Code:\D*(\d+)/.exec(message) || []
    if (code !== undefined) return { error: `${errorClass}:${code}` }
    const [, reason] = /^BacnetAbort\b.*Reason:(\d+)/.exec(message) || []
    return reason !== undefined ? { reason: Number(reason) } : { failure: message }
}

const propertyOf = (property) => ({ id: property.id, index: property.index === undefined ? ALL : property.index })

class Peer {
    // address: of this machine, to bind to. Await listening before anything else.
    constructor(name, address, port) {
        const kind = PACKAGES[name]
        if (!kind) throw new Error(`no package ${name}`)
        this.callbacks = kind.callbacks
        this.client = kind.create({
            port,
            interface: address,
            broadcastAddress: `127.255.255.255:${port}`,
            apduTimeout: 3000,
        })
        this.port = port
        this.listening = new Promise((resolve, reject) => {
            this.client.on('listening', resolve)
            this.client.on('error', reject)
        })
    }

    close() {
        this.client.close()
    }

    // "a.b.c.d", or "a.b.c.d/NET:MAC" for a station behind that router.
    receiver(to) {
        const [address, station] = to.split('/')
        const receiver = { address: `${address}:${this.port}` }
        if (station) {
            const [net, mac] = station.split(':').map(Number)
            Object.assign(receiver, { net, adr: [mac] })
        }
        return receiver
    }

    call(method, ...parameters) {
        const called = this.callbacks
            ? new Promise((resolve, reject) =>
                  this.client[method](...parameters, (error, result) => (error ? reject(error) : resolve(result))),
              )
            : this.client[method](...parameters)
        return called.catch((error) => {
            throw failureOf(error)
        })
    }

    async read({ to, type, instance, property, index }) {
        const options = { arrayIndex: index === undefined ? ALL : index }
        const answer = await this.call('readProperty', this.receiver(to), { type, instance }, property, options)
        return answer.values.map(fromPackage)
    }

    // objects: [{type, instance, properties: [{id, index}]}]; gives "type:instance" -> "property[index]" -> values.
    async readMultiple({ to, objects }) {
        const request = objects.map(({ type, instance, properties }) => ({
            objectId: { type, instance },
            properties: properties.map(propertyOf),
        }))
        const answer = await this.call('readPropertyMultiple', this.receiver(to), request, {})
        const plain = {}
        for (const { objectId, values } of answer.values) {
            const object = (plain[`${objectId.type}:${objectId.instance}`] ||= {})
            for (const item of values) {
                const property = item.property || item
                const index = property.index === ALL ? '' : `[${property.index}]`
                object[`${property.id}${index}`] = item.value.map(fromPackage)
            }
        }
        return plain
    }

    async write({ to, type, instance, property, index, priority, values }) {
        const options = { arrayIndex: index, priority }
        const made = values.map(toPackage)
        await this.call('writeProperty', this.receiver(to), { type, instance }, property, made, options)
        return 'done'
    }

    // objects: [{type, instance, properties: [{id, index, priority, values}]}]
    async writeMultiple({ to, objects }) {
        const request = objects.map(({ type, instance, properties }) => ({
            objectId: { type, instance },
            values: properties.map((property) => ({
                property: propertyOf(property),
                value: property.values.map(toPackage),
                priority: property.priority || NO_PRIORITY,
            })),
        }))
        await this.call('writePropertyMultiple', this.receiver(to), request, {})
        return 'done'
    }

    // The devices that answer a broadcast to all networks, ascending; ends when so many have, or after five seconds.
    whoIs({ low, high, count }) {
        return new Promise((resolve) => {
            const found = new Set()
            const done = () => resolve([...found].sort((left, right) => left - right))
            const timer = setTimeout(done, 5000)
            this.client.on('iAm', ({ payload }) => {
                found.add(payload.deviceId)
                if (found.size < count) return
                clearTimeout(timer)
                done()
            })
            this.client.whoIs({ net: EVERY_NETWORK, adr: [] }, { lowLimit: low, highLimit: high })
        })
    }
}

module.exports = { Peer, ALL, PACKAGES: Object.keys(PACKAGES) }
