// Prints how many times a second one of the packages does one step, one after the other, when it is warm.
//
// usage: node rate.js PACKAGE FILE
//
// The file is JSON as for client.js, with one "step" and "seconds" to measure.
'use strict'

const fs = require('fs')
const { Peer } = require('./peer')

const WARM_UP = 0.5 // seconds

const seconds = () => Number(process.hrtime.bigint()) / 1e9

async function repeat(peer, step, length) {
    const start = seconds()
    let calls = 0
    while (seconds() - start < length) {
        await peer[step.do](step)
        ++calls
    }
    return calls / (seconds() - start)
}

async function main([name, file]) {
    const { bind, port, step, seconds: length } = JSON.parse(fs.readFileSync(file, 'utf8'))
    const peer = new Peer(name, bind, port)
    await peer.listening
    await repeat(peer, step, WARM_UP)
    const rate = await repeat(peer, step, length)
    process.stdout.write(`${rate}\n`, () => process.exit(0))
}

main(process.argv.slice(2)).catch((error) => {
    console.error(error)
    process.exit(1)
})
