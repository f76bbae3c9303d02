// Defines <corvalence-gauge>: a dial whose needles follow the tables of their scales. The element holds its pictures and
// a JSON script with one entry for each needle: {key, label, points: [[value, degrees], ...], value}. The properties
// value, value2, ... move the needles; the address and messages of the parent page set them, too.
(function () {
    'use strict';

    if (customElements.get('corvalence-gauge'))
        return;

    /** The angle for a value within the table, on a straight line between its points. */
    function angleOf(points, value) {
        const next = points.findIndex(point => value <= point[0]);
        if (next <= 0)
            return next < 0 ? points[points.length - 1][1] : points[0][1];
        const [low, lowAngle] = points[next - 1];
        const [high, highAngle] = points[next];
        return lowAngle + (highAngle - lowAngle) * ((value - low) / (high - low));
    }

    /** A number or the text of one. NaN for everything else. */
    function toNumber(input) {
        if (typeof input === 'string' && input.trim() !== '')
            return Number(input);
        return typeof input === 'number' ? input : NaN;
    }

    function addInput(parent, type, label, attributes) {
        const input = document.createElement('input');
        input.type = type;
        input.title = label;
        input.setAttribute('aria-label', label);
        for (const name of Object.keys(attributes))
            input.setAttribute(name, attributes[name]);
        parent.append(input);
        return input;
    }

    /** One needle: its picture, its slider and its number field. */
    class Needle {
        constructor(data, picture, controls) {
            this.points = data.points;
            this.min = data.points[0][0];
            this.max = data.points[data.points.length - 1][0];
            this.picture = picture;
            const range = this.max - this.min;
            this.step = Math.pow(10, Math.floor(Math.log10(range / 50)));
            this.decimals = Math.min(Math.max(3 - Math.ceil(Math.log10(range)), 0), 20);
            const limits = {min: this.min, max: this.max, step: 'any'};
            this.slider = addInput(controls, 'range', data.label, limits);
            this.field = addInput(controls, 'number', data.label, limits);
            this.slider.addEventListener('input', () => this.show(this.slider.value));
            this.slider.addEventListener('keydown', event => this.moveByKey(event));
            this.field.addEventListener('input', () => this.show(this.field.value));
            this.field.addEventListener('change', () => this.writeField());
        }

        /** Ignores what is not a number. Values beyond the scale stop at its ends. */
        show(input) {
            const number = toNumber(input);
            if (Number.isNaN(number))
                return;
            this.value = Math.min(Math.max(number, this.min), this.max);
            this.picture.style.transform = `rotate(${angleOf(this.points, this.value)}deg)`;
            this.picture.setAttribute('aria-valuenow', this.rounded());
            this.slider.value = this.value;
            if (document.activeElement !== this.field)
                this.writeField();
        }

        rounded() {
            return String(Number(this.value.toFixed(this.decimals)));
        }

        writeField() {
            this.field.value = this.rounded();
        }

        /** Browsers step through a range without a step each in their own way. */
        moveByKey(event) {
            const steps = {ArrowRight: 1, ArrowUp: 1, ArrowLeft: -1, ArrowDown: -1, PageUp: 10, PageDown: -10};
            if (!(event.key in steps) || event.altKey || event.ctrlKey || event.metaKey)
                return;
            event.preventDefault();
            // From a value between two steps to the next step; the margin is for rounding errors.
            const position = this.value / this.step;
            const count = steps[event.key];
            const start = count > 0 ? Math.floor(position + 1e-6) : Math.ceil(position - 1e-6);
            this.show((start + count) * this.step);
        }
    }

    class Gauge extends HTMLElement {
        connectedCallback() {
            // The parser may not have read the content yet.
            if (document.readyState === 'loading')
                document.addEventListener('DOMContentLoaded', () => this.start(), {once: true});
            else
                this.start();
        }

        start() {
            const data = this.querySelector('script[type="application/json"]');
            if (this.needles || !data)
                return;
            const pictures = this.querySelectorAll('.needle');
            const controls = this.querySelector('.controls');
            controls.textContent = ''; // those of a copied gauge
            this.needles = JSON.parse(data.textContent).map((entry, i) => {
                const needle = new Needle(entry, pictures[i], controls);
                needle.show(entry.value);
                needle.show(this[entry.key]); // set before the element was ready
                Object.defineProperty(this, entry.key, {
                    get: () => needle.value,
                    set: value => needle.show(value)
                });
                return Object.assign(needle, {key: entry.key});
            });
            if (this === document.querySelector('corvalence-gauge'))
                this.take(Object.fromEntries(new URLSearchParams(location.search)));
        }

        /** Shows the values of an object with the properties value, value2, ... */
        take(values) {
            for (const needle of this.needles || [])
                needle.show(values[needle.key]);
        }
    }

    customElements.define('corvalence-gauge', Gauge);

    // The first gauge of the page, or the one whose id the message gives as gauge.
    window.addEventListener('message', event => {
        if (event.source !== window.parent || !event.data)
            return;
        const gauge = event.data.gauge === undefined
            ? document.querySelector('corvalence-gauge') : document.getElementById(event.data.gauge);
        if (gauge instanceof Gauge)
            gauge.take(event.data);
    });
}());
