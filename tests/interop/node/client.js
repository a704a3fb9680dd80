// Does what a file asks, with one of the packages as the client, and prints what came of it.
//
// usage: node client.js PACKAGE FILE
//
// The file is JSON: {"bind": "127.0.0.2", "port": 47808, "steps": [{"do": "read", "to": "127.0.0.3", ...}, ...]}, with
// the functions of peer.js. Prints a list with a result for each step, in their order.
'use strict'

const fs = require('fs')
const { Peer } = require('./peer')

async function main([name, file]) {
    const { bind, port, steps } = JSON.parse(fs.readFileSync(file, 'utf8'))
    const peer = new Peer(name, bind, port)
    await peer.listening
    const results = []
    for (const step of steps) results.push(await peer[step.do](step).catch((failure) => failure))
    // The packages have timers that would keep the process for seconds.
    process.stdout.write(JSON.stringify(results), () => process.exit(0))
}

main(process.argv.slice(2)).catch((error) => {
    console.error(error)
    process.exit(1)
})
