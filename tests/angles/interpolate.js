// Prints the angle of each value on standard input by a scale of a JSON file: node interpolate.js FILE SCALE.
"use strict";
const { readFileSync } = require("node:fs");

const [file, name] = process.argv.slice(2);
const { points, min, max } = JSON.parse(readFileSync(file, "utf8")).scales.find((scale) => scale.name === name);
for (const line of readFileSync(0, "utf8").trim().split("\n")) {
    const value = Math.min(Math.max(Number(line), min), max);
    const next = Math.max(1, points.findIndex(([end]) => value <= end));
    const [[v0, a0], [v1, a1]] = [points[next - 1], points[next]];
    console.log(a0 + (a1 - a0) * ((value - v0) / (v1 - v0)));
}
