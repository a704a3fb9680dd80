// A BACnet/IP device written with one of the packages: answers Who-Is, ReadProperty, ReadPropertyMultiple and
// WriteProperty from a file, until it is killed, two minutes at most. Prints "ready" when it listens.
//
// usage: node server.js PACKAGE FILE
//
// The file is JSON: {"bind": "127.0.0.2", "port": 47808, "device": 77, "objects": {"0:1": {"85": [{"type": 4, "value":
// 21.5}]}}}, values as in values.js. The parts of an array property are reached by their index.
'use strict'

const fs = require('fs')
const { Peer, ALL } = require('./peer')
const { fromPackage, toPackage } = require('./values')

const LIFETIME = 120000 // ms; whoever started it may be gone
const UNSIGNED = 2
const PROPERTY_ALL = 8
const NO_SEGMENTATION = 3
const VENDOR = 999
const SERVICES = { readProperty: 12, writeProperty: 15 }
const OBJECT = 1
const PROPERTY = 2
const UNKNOWN_OBJECT = 31
const UNKNOWN_PROPERTY = 32
const INVALID_ARRAY_INDEX = 42

class Device {
    constructor({ device, objects }) {
        this.instance = device
        this.objects = objects
    }

    // The values, plain, or {errorClass, errorCode}.
    find({ type, instance }, { id, index }) {
        const object = this.objects[`${type}:${instance}`]
        if (!object) return { errorClass: OBJECT, errorCode: UNKNOWN_OBJECT }
        const values = object[id]
        if (!values) return { errorClass: PROPERTY, errorCode: UNKNOWN_PROPERTY }
        if (index === ALL) return values
        if (index === 0) return [{ type: UNSIGNED, value: values.length }]
        return index <= values.length ? [values[index - 1]] : { errorClass: PROPERTY, errorCode: INVALID_ARRAY_INDEX }
    }

    // As the packages want an entry of a multiple answer.
    entry(object, property) {
        const found = this.find(object, property)
        const value = found.errorCode
            ? [{ type: 0, value: { type: 'BacnetError', ...found } }]
            : found.map(toPackage)
        return { property, value }
    }

    entries(object, properties) {
        return properties.flatMap((property) =>
            property.id === PROPERTY_ALL
                ? Object.keys(this.objects[`${object.type}:${object.instance}`] || {}).map((id) =>
                      this.entry(object, { id: Number(id), index: ALL }),
                  )
                : [this.entry(object, property)],
        )
    }
}

function serve(client, device) {
    client.on('whoIs', ({ header, payload: { lowLimit, highLimit } }) => {
        if (lowLimit !== undefined && (device.instance < lowLimit || device.instance > highLimit)) return
        client.iAmResponse(header.sender, device.instance, NO_SEGMENTATION, VENDOR)
    })
    client.on('readProperty', ({ header, invokeId, payload: { objectId, property } }) => {
        const found = device.find(objectId, property)
        if (found.errorCode)
            client.errorResponse(header.sender, SERVICES.readProperty, invokeId, found.errorClass, found.errorCode)
        else client.readPropertyResponse(header.sender, invokeId, objectId, property, found.map(toPackage), {})
    })
    client.on('readPropertyMultiple', ({ header, invokeId, payload: { properties } }) => {
        const values = properties.map(({ objectId, properties: wanted }) => ({
            objectId,
            values: device.entries(objectId, wanted),
        }))
        client.readPropertyMultipleResponse(header.sender, invokeId, values)
    })
    client.on('writeProperty', ({ header, invokeId, payload: { objectId, value } }) => {
        const found = device.find(objectId, value.property)
        if (found.errorCode) {
            client.errorResponse(header.sender, SERVICES.writeProperty, invokeId, found.errorClass, found.errorCode)
            return
        }
        found.splice(0, found.length, ...value.value.map(fromPackage))
        client.simpleAckResponse(header.sender, SERVICES.writeProperty, invokeId)
    })
}

async function main([name, file]) {
    const site = JSON.parse(fs.readFileSync(file, 'utf8'))
    const peer = new Peer(name, site.bind, site.port)
    await peer.listening
    serve(peer.client, new Device(site))
    console.log('ready')
    setTimeout(() => process.exit(3), LIFETIME)
}

main(process.argv.slice(2)).catch((error) => {
    console.error(error)
    process.exit(1)
})
