/** Conversion of numbers that users type, and of values in documents. */

/** The value of a calculation such as "1/3" or "0.5*2"; undefined if it is invalid. */
export function evaluate(text: string): number | undefined {
    let at = 0;
    const skip = () => {
        while (text[at] === ' ') ++at;
    };
    const take = (letters: string) => {
        skip();
        const letter = text[at];
        if (letter === undefined || !letters.includes(letter)) return undefined;
        ++at;
        return letter;
    };
    const factor = (): number => {
        if (take('-')) return -factor();
        if (take('+')) return factor();
        if (take('(')) {
            const value = sum();
            return take(')') ? value : NaN;
        }
        skip();
        const match = /^(\d+\.?\d*|\.\d+)([eE][-+]?\d+)?/.exec(text.slice(at));
        if (!match) return NaN;
        at += match[0].length;
        return Number(match[0]);
    };
    const product = (): number => {
        let value = factor();
        for (let sign = take('*/'); sign; sign = take('*/'))
            value = sign === '*' ? value * factor() : value / factor();
        return value;
    };
    const sum = (): number => {
        let value = product();
        for (let sign = take('+-'); sign; sign = take('+-'))
            value = sign === '+' ? value + product() : value - product();
        return value;
    };
    const value = sum();
    skip();
    return at === text.length && Number.isFinite(value) ? value : undefined;
}

/** The components of a value: "1 0.5 0" in a property, "1, 0.5, 0" in a binding. */
export function parseNumbers(text: string): number[] {
    return text
        .split(/[\s,]+/)
        .filter((part) => part !== '')
        .map(Number)
        .filter((number) => Number.isFinite(number));
}

/** The shortest string that represents the same 32-bit float. */
export function formatNumber(value: number): string {
    const wanted = Math.fround(value);
    for (let digits = 1; digits < 9; ++digits) {
        const text = wanted.toPrecision(digits);
        if (Math.fround(Number(text)) === wanted) return String(Number(text));
    }
    return String(Number(wanted.toPrecision(9)));
}

export function encodeSrgb(linear: number): number {
    const value = Math.min(1, Math.max(0, linear));
    return value <= 0.0031308 ? 12.92 * value : 1.055 * value ** (1 / 2.4) - 0.055;
}

export function decodeSrgb(stored: number): number {
    return stored <= 0.04045 ? stored / 12.92 : ((stored + 0.055) / 1.055) ** 2.4;
}

/** Converts linear light to the format of colour fields in browsers. */
export function toHex(linear: readonly number[]): string {
    const byte = (value: number) =>
        Math.round(255 * encodeSrgb(value))
            .toString(16)
            .padStart(2, '0');
    return `#${[0, 1, 2].map((i) => byte(linear[i] ?? 0)).join('')}`;
}

export function fromHex(hex: string): number[] {
    return [1, 3, 5].map((at) => decodeSrgb(parseInt(hex.slice(at, at + 2), 16) / 255));
}
