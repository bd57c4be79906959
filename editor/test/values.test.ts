import assert from 'node:assert/strict';
import { test } from 'node:test';
import { joinBytes, splitBytes } from '../src/model/connection.ts';
import { fuzzyScore, rank } from '../src/model/fuzzy.ts';
import { evaluate, formatNumber, fromHex, parseNumbers, toHex } from '../src/model/numbers.ts';
import { parameterNumbers, parameterOf, withNumbers, withSettings } from '../src/model/parameters.ts';
import type { Parameter } from '../src/model/parameters.ts';
import { frame, toGraph, wheel, zoomAt } from '../src/model/viewport.ts';
import { documentOf, node } from './support.ts';

test('fuzzy search puts first what an artist means', () => {
    const labels = ['Uv Set', 'Vertex Colour Set', 'Layer Blend', 'Animated Uv', 'Colour Ramp', 'Maths'];
    const found = (query: string) => rank(labels, (label) => fuzzyScore(query, label));
    const bests = ['vcs', 'lb', 'uv', 'col', 'ma'].map((query) => found(query)[0]);
    assert.deepEqual(bests, ['Vertex Colour Set', 'Layer Blend', 'Uv Set', 'Colour Ramp', 'Maths']);
    assert.deepEqual(found('zz'), []);
    assert.deepEqual(found(''), labels);
});

test('numbers may be sums', () => {
    const cases: [string, number][] = [
        ['0.5', 0.5],
        ['1/3', 1 / 3],
        ['2*(3-1)+-1', 3],
        [' .5e1 ', 5],
    ];
    for (const [text, value] of cases) assert.equal(evaluate(text), value, text);
    for (const text of ['1/0', '2+', 'alert(1)', '1 2', '']) assert.equal(evaluate(text), undefined, text);
    for (const value of [0.1, 1 / 3, 1e-7, 16777217, -2.5, 0])
        assert.equal(Math.fround(Number(formatNumber(value))), Math.fround(value));
    assert.equal(formatNumber(Math.fround(0.1)), '0.1');
});

test('colours go through hexadecimal digits and back', () => {
    for (const hex of ['#000000', '#ffffff', '#0a80c8']) assert.equal(toHex(fromHex(hex)), hex);
    assert.ok(Math.abs(fromHex('#bcbcbc')[0]! - 0.5) < 0.01);
});

test('a property is a parameter if it bears its name and value', () => {
    const parameter: Parameter = {
        stream: 'float',
        tag: 'tint',
        count: 3,
        values: { default: '1, 0.9, 0.8' },
    };
    const constant = node('c', [], []);
    const add = (name: string, kind: string, value: string) => ({ name, kind, value, editable: true });
    constant.properties = [
        add('Name', 'string', 'tint'),
        add('Default Colour', 'colour', '1 0.9 0.8'),
        add('Max Scalar', 'float', '1'),
    ];
    assert.equal(parameterOf([parameter], constant, 'Default Colour'), parameter);
    assert.equal(parameterOf([parameter], constant, 'Max Scalar'), undefined);
    assert.equal(parameterOf([parameter], constant, 'Name'), undefined);
    assert.deepEqual(parameterNumbers(withNumbers(parameter, [0, 0.5, 1, 7])), [0, 0.5, 1]);
    assert.deepEqual(parameterNumbers({ ...parameter, values: {} }), [0, 0, 0]);
    assert.deepEqual(parseNumbers('1, 2  x 3'), [1, 2, 3]);

    // A drag sets further values before the first is confirmed.
    const document = documentOf([constant], []);
    const colour = { node: 'c', name: 'Default Colour', kind: 'colour' };
    const first = withSettings(document, [parameter], new Map(), [{ ...colour, value: '0.5 0 0' }])!;
    const second = withSettings(document, first.parameters, first.sentValues, [
        { ...colour, value: '1 0 0' },
    ]);
    assert.deepEqual(parameterNumbers(second!.parameters[0]!), [1, 0, 0]);
    const others = [
        { ...colour, value: '1 0 0' },
        { ...colour, name: 'Name', value: 'shade' },
    ];
    assert.equal(withSettings(document, [parameter], new Map(), others), undefined, 'a name is no parameter');
});

test('zooming keeps the point below the pointer, and wheels do as they are', () => {
    const view = { x: 30, y: -20, zoom: 0.7 };
    const at = { x: 200, y: 100 };
    const before = toGraph(view, at);
    for (const factor of [0.5, 3, 1e-6, 1e6]) {
        const after = toGraph(zoomAt(view, at, factor), at);
        assert.ok(Math.hypot(after.x - before.x, after.y - before.y) < 1e-9);
    }
    const event = { deltaX: 0, deltaY: 100, deltaMode: 0, ctrlKey: false, shiftKey: false };
    assert.ok(wheel(view, event, at).zoom < view.zoom);
    assert.deepEqual(wheel(view, { ...event, deltaX: 3, deltaY: 4 }, at), { x: 27, y: -24, zoom: 0.7 });
    assert.ok(wheel(view, { ...event, deltaY: -4, ctrlKey: true }, at).zoom > view.zoom);
});

test('what is framed lies inside of what no panel covers', () => {
    const box = { x: -500, y: 100, width: 4000, height: 300 };
    const size = { width: 1280, height: 700 };
    const view = frame(box, { width: size.width - 330, height: size.height - 40 });
    const left = box.x * view.zoom + view.x;
    assert.ok(left >= 0 && left + box.width * view.zoom <= size.width - 330);
});

test('bytes travel with their JSON', () => {
    const text = JSON.stringify({ revision: 1, text: 'Grün' });
    const { json, bytes } = splitBytes(joinBytes(text, new Uint8Array([1, 2, 3])));
    assert.equal(json.text, 'Grün');
    assert.deepEqual([...bytes], [1, 2, 3]);
});
