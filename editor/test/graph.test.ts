import assert from 'node:assert/strict';
import { test } from 'node:test';
import { fittingPort, partnersOf, whyNot } from '../src/model/connect.ts';
import { addAnnotation, moved, noMoves, placesOf, stepsOf } from '../src/model/annotations.ts';
import { withContents, withPoint } from '../src/model/annotations.ts';
import { applyChanges, changesMeaning, positionOf } from '../src/model/document.ts';
import type { DocumentState } from '../src/model/document.ts';
import { addNode, connect, removeAndRewire, typesFor } from '../src/model/edits.ts';
import { alongEdge, neighbour } from '../src/model/walk.ts';
import { portPoint, shapeOf } from '../src/model/shape.ts';
import { documentOf, edgeFrom, edgesOf, node, port, type } from './support.ts';

const uv = node('uv', [], [port('read', 2)]);
const grey = node('grey', [], [port('read', 1)], [0, 200]);
const texture = node('texture', [port('in', 2)], [port('colour', 3)], [200, 0]);
const maths = node('maths', [port('a', 3), port('b', 3)], [port('value', 3)], [400, 0]);
const end = node('end', [port('colour', 3)], [], [600, 20]);
const nodes = [uv, grey, texture, maths, end];
for (const each of nodes) each.record = { ...each.record, type: each.record.id };
const graph = documentOf(nodes, ['uv.read texture.in', 'texture.colour maths.a', 'maths.value end.colour']);
const types = [
    type('uv', [], [['read', 2]]),
    type('grey', [], [['read', 1]]),
    type('texture', [['in', 2]], [['colour', 3]]),
    type('maths', [['a'], ['b']], [['value']]),
    type('end', [['colour', 3]], []),
];
const catalogue = new Map(types.map((each) => [each.type, each]));

test('edges are refused with their reason', () => {
    const cases: [string, RegExp | ''][] = [
        ['grey.read maths.b', ''],
        ['grey.read end.colour', ''], // a scalar is widened
        ['uv.read end.colour', /output with 2 components cannot be connected to an input with 3/],
        ['uv.read maths.b', ''], // its inputs accept any number
        ['maths.value maths.a', /itself/],
        ['maths.value texture.in', /cycle: texture → maths → texture/],
        ['gone.read end.colour', /no longer exists/],
        ['uv.other end.colour', /must connect an output to an input/],
    ];
    for (const [text, reason] of cases) {
        const words = whyNot(graph, catalogue, edgeFrom(text));
        if (reason === '') assert.equal(words, '', text);
        else assert.match(words, reason);
    }
});

test('the partners of a port are those that nothing is said against', () => {
    for (const each of nodes)
        for (const [side, ports] of [
            ['output', each.outputs!],
            ['input', each.inputs!],
        ] as const)
            for (const { name, components } of ports) {
                const at = { node: each.record.id, port: name, side, components };
                const found = partnersOf(graph, catalogue, at).map((end) => `${end.node}.${end.port}`);
                for (const other of nodes)
                    for (const end of (side === 'output' ? other.inputs : other.outputs)!) {
                        const [here, there] = [`${at.node}.${name}`, `${other.record.id}.${end.name}`];
                        const edge = side === 'output' ? `${here} ${there}` : `${there} ${here}`;
                        const isFree = whyNot(graph, catalogue, edgeFrom(edge)) === '';
                        assert.equal(found.includes(there), isFree, edge);
                    }
            }
});

test('a connected input gives way to another edge', () => {
    assert.deepEqual(edgesOf(connect(graph, edgeFrom('grey.read texture.in'))), [
        'removeEdge uv.read texture.in',
        'addEdge grey.read texture.in',
    ]);
    assert.deepEqual(connect(graph, edgeFrom('uv.read texture.in')), []);
});

test('a node is added where its placement says', () => {
    const at = { x: 10.4, y: 20 };
    const free = addNode(graph, { type: types[3]! }, at, { kind: 'free' });
    assert.equal(free.id, 'maths2');
    assert.deepEqual(free.steps[0], {
        do: 'addNode',
        id: 'maths2',
        type: 'maths',
        version: 3,
        properties: [
            { name: 'PositionX', kind: 'float', value: '10' },
            { name: 'PositionY', kind: 'float', value: '20' },
        ],
    });
    const behind = addNode(graph, { type: types[3]! }, at, { kind: 'behind', node: 'texture' });
    assert.deepEqual(edgesOf(behind.steps), ['addEdge texture.colour maths2.a']);
    const edge = edgeFrom('texture.colour maths.a');
    assert.deepEqual(edgesOf(addNode(graph, { type: types[3]! }, at, { kind: 'into', edge }).steps), [
        'removeEdge texture.colour maths.a',
        'addEdge texture.colour maths2.a',
        'addEdge maths2.value maths.a',
    ]);
    const input = { node: 'texture', port: 'in', side: 'input', components: 2 } as const;
    assert.deepEqual(edgesOf(addNode(graph, { type: types[1]! }, at, { kind: 'at', port: input }).steps), [
        'removeEdge uv.read texture.in',
        'addEdge grey2.read texture.in',
    ]);
});

test('menus offer what fits', () => {
    const names = (side: 'input' | 'output', components: number) =>
        typesFor({ kind: 'at', port: { node: 'x', port: 'y', side, components } }, catalogue).map(
            (choice) => choice.type.type,
        );
    assert.deepEqual(names('output', 2), ['texture', 'maths']);
    assert.deepEqual(names('output', 1), ['texture', 'maths', 'end']);
    assert.deepEqual(names('input', 3), ['grey', 'texture', 'maths']);
    const shown = { help: '', visible: true, editable: true };
    const sort = {
        ...type('sort', [['in', 1]], [['out', 1]]),
        variants: [{ property: 'Function', value: 'Mix', inputs: type('', [['in', 3]], []).inputs }],
        properties: [{ ...shown, name: 'Function', kind: 'enum', default: 'Add', choices: ['Add', 'Mix'] }],
    };
    const port = { node: 'x', port: 'y', side: 'output', components: 3 } as const;
    const [mix, ...others] = typesFor({ kind: 'at', port }, new Map([['sort', sort]]));
    assert.deepEqual([mix!.setting?.value, others], ['Mix', []], 'no other takes three components');
    const added = addNode(graph, mix!, { x: 0, y: 0 }, { kind: 'at', port });
    assert.equal(added.id, 'mix');
    assert.deepEqual((added.steps[0] as { properties: object[] }).properties[0], mix!.setting);
    const ports = type('many', [['one', 1], ['any'], ['three', 3]], []).inputs;
    assert.equal(fittingPort(ports, 3, 'input')?.name, 'three');
    assert.equal(fittingPort(ports, 2, 'input')?.name, 'any');
});

test('deleting with rewiring joins what is left, as far as it converts', () => {
    const edges = (ids: string[]) => {
        const chosen = nodes.filter(({ record }) => ids.includes(record.id));
        return edgesOf(removeAndRewire(graph, catalogue, chosen)).filter((step) => step.startsWith('add'));
    };
    assert.deepEqual(edges(['maths']), ['addEdge texture.colour end.colour']);
    assert.deepEqual(edges(['texture']), ['addEdge uv.read maths.a']);
    assert.deepEqual(edges(['texture', 'maths']), []); // 2 components do not convert to 3
    assert.deepEqual(edges(['uv']), []);
});

test('changes of the server keep numbers and ids in step', () => {
    const renamed = { ...uv, record: { ...uv.record, id: 'grey' } };
    const swapped = { ...grey, record: { ...grey.record, id: 'uv' } };
    const changes = { nodes: [renamed, swapped], edges: [], goneNodes: [end.number], goneEdges: [] };
    const next = applyChanges(graph, changes);
    assert.equal(next.numbers.get('grey'), uv.number);
    assert.equal(next.numbers.get('uv'), grey.number);
    assert.equal(next.numbers.get('end'), undefined);
    assert.equal(graph.numbers.get('uv'), uv.number, 'the old state is still what it was');
});

test('arrows walk in space, and with edges', () => {
    assert.equal(neighbour(graph, uv, 'ArrowRight'), texture);
    assert.equal(neighbour(graph, uv, 'ArrowDown'), grey);
    assert.equal(neighbour(graph, uv, 'ArrowLeft'), undefined);
    assert.equal(alongEdge(graph, texture, 'ArrowRight'), maths);
    assert.equal(alongEdge(graph, texture, 'ArrowLeft'), uv);
    assert.deepEqual(positionOf(maths), { x: 400, y: 0 });
});

test('ports stand on the sides of their node, one below the other', () => {
    const first = portPoint(maths, 'input', 'a');
    const second = portPoint(maths, 'input', 'b');
    const out = portPoint(maths, 'output', 'value');
    assert.equal(first.x, 0);
    assert.equal(out.x, shapeOf(maths).width);
    assert.equal(out.y, first.y);
    assert.ok(second.y > first.y && second.y < shapeOf(maths).height);
});

test('frames hold what is in them, and points move with both ends of their edge', () => {
    const list = [
        ['frame', -10, -10, 300, 250] as const,
        ['frame', 0, 0, 300, 10] as const, // extends beyond the first
        ['note', 100, 100, 900, 10] as const,
    ].map(([kind, x, y, width, height], i) => ({
        number: i + 1,
        record: { id: String(i + 1), kind, text: '', x, y, width, height },
    }));
    const framed: DocumentState = {
        ...graph,
        annotations: new Map(list.map((each) => [each.number, each])),
        edges: new Map(
            [...graph.edges].map(([number, edge]) => [
                number,
                { number, record: { ...edge.record, points: [{ x: 100, y: 100 }] } },
            ]),
        ),
    };
    const held = withContents(framed, [], [1]);
    assert.deepEqual([...held.nodes], [uv.number, grey.number, texture.number]);
    assert.deepEqual([...held.annotations], [1, 3]);
    const places = moved(placesOf(framed, noMoves, held), { x: 5, y: -6 });
    assert.deepEqual(places.nodes.get(grey.number), { x: 5, y: 194 });
    assert.deepEqual(places.areas.get(3), { x: 105, y: 94, width: 900, height: 10 });
    assert.deepEqual([...places.points.values()], [[{ x: 105, y: 94 }]], 'of the edge in the frame alone');
    assert.deepEqual(
        stepsOf(places, framed).map((step) => step.do),
        ['setProperties', 'setAnnotation', 'setAnnotation', 'setPoints'],
    );

    const edge = [...framed.edges.values()][0]!;
    const changes = { nodes: [], edges: [edge], goneNodes: [], goneEdges: [], annotations: [list[0]!] };
    assert.ok(!changesMeaning(graph, changes), 'nothing is compiled again');
    assert.equal(applyChanges(framed, { ...changes, goneAnnotations: [2] }).annotations.size, 2);
    const at = { x: 190, y: 60 }; // near the head
    assert.deepEqual(withPoint(framed, edge, at), { points: [{ x: 100, y: 100 }, at], index: 1 });
    assert.equal(addAnnotation(framed, 'note', list[2]!.record).id, 'note');
});
