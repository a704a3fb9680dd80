// Values as plain JSON, the same for all packages: {"type": application tag, "value": ...}. A date is "2026-11-21", a
// time "14:30:00.25", an object "8:1000", a bit string "1010", octets a list of numbers. What is no application-tagged
// value is left as the package gives it. Dates and times of the packages are in the process' time zone: run it in UTC.
'use strict'

const BITS = 8
const two = (number) => String(number).padStart(2, '0')

function bitText({ bitsUsed, value }) {
    let text = ''
    for (let bit = 0; bit < bitsUsed; ++bit) text += (value[Math.floor(bit / BITS)] >> bit % BITS) & 1
    return text
}

function bitString(text) {
    const value = new Array(Math.ceil(text.length / BITS)).fill(0)
    for (let bit = 0; bit < text.length; ++bit)
        if (text[bit] === '1') value[Math.floor(bit / BITS)] |= 1 << bit % BITS
    return { bitsUsed: text.length, value }
}

const dateText = (date) => `${date.getFullYear()}-${two(date.getMonth() + 1)}-${two(date.getDate())}`
const timeText = (time) =>
    `${two(time.getHours())}:${two(time.getMinutes())}:${two(time.getSeconds())}.${two(time.getMilliseconds() / 10)}`

const FROM_PACKAGE = {
    6: (octets) => Array.from(octets),
    8: bitText,
    10: dateText,
    11: timeText,
    12: (object) => `${object.type}:${object.instance}`,
}

const TO_PACKAGE = {
    8: bitString,
    10: (text) => new Date(`${text}T00:00:00`),
    11: (text) => new Date(`2000-01-01T${text}0`),
    12: (text) => ({ type: Number(text.split(':')[0]), instance: Number(text.split(':')[1]) }),
}

function fromPackage({ type, value, encoding }) {
    if (value !== null && typeof value === 'object' && 'errorClass' in value)
        return { error: `${value.errorClass}:${value.errorCode}` }
    const convert = FROM_PACKAGE[type]
    const plain = { type, value: convert && value !== null ? convert(value) : value }
    if (encoding !== undefined && encoding !== 0) plain.encoding = encoding
    return plain
}

function toPackage({ type, value, encoding }) {
    const convert = TO_PACKAGE[type]
    const made = { type, value: convert ? convert(value) : value }
    if (encoding !== undefined) made.encoding = encoding
    return made
}

module.exports = { fromPackage, toPackage }
