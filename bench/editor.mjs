// Measures the editor in Debian's Chromium, without a graphics card. Times are medians in milliseconds. `shown` is the
// time until the first frame of the graph is on the screen; `pageTime` and `serverTime` are the processor times that
// the page's process and the server have used by then. `structure` is the time from an edit of the structure to the new
// image, `value` that from a new value of a parameter, and `frame` that of the image alone; images have 256 by 256
// pixels, and a time ends when they can be read. `far` and `near` are frame times of panning with all nodes in view and
// at zoom 1, and `drag` that of moving a node at zoom 1. The last table compares measurements with their limits.
// Usage: node bench/editor.mjs MOX [DIST], where DIST is the folder of a page that replaces the one in MOX. Such a page
// takes longer to open, because this script serves it. The page's packages must be installed (npm ci in editor/).

import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { launch, open, serve } from '../editor/test/drive.mjs';

const [mox, dist] = process.argv.slice(2);
const folder = mkdtempSync(`${tmpdir()}/mox-editor-bench-`);
const browser = await launch();

/** Chains of additions, one below the other, that all lead to one surface. */
function material(count, length) {
    const nodes = [];
    const edges = [];
    const edge = (tail, tailPort, head, headPort) =>
        edges.push(`<edge tail="${tail}" tailPort="${tailPort}" head="${head}" headPort="${headPort}"/>`);
    const node = (id, type, x, y, more = '') =>
        nodes.push(
            `<node id="${id}" type="${type}" version="0">${more}` +
                `<property name="PositionX" kind="float" value="${x}"/>` +
                `<property name="PositionY" kind="float" value="${y}"/></node>`,
        );
    node('tint', 'CoreConstant', -300, 0, '<property name="Name" kind="string" value="tint"/>');
    const isAddition = '<property name="Function" kind="enum" value="Addition"/>';
    for (let i = 0; i < count - 2; ++i) {
        node(`n${i}`, 'CoreMaths', (i % length) * 260, Math.floor(i / length) * 140, isAddition);
        if (i % length === 0) edge('tint', 'read', `n${i}`, 'in_value1');
        else edge(`n${i - 1}`, 'out_value', `n${i}`, 'in_value1');
        if (i >= length) edge(`n${i - length}`, 'out_value', `n${i}`, 'in_value2');
    }
    node('surface', 'Surface', length * 260, 0);
    edge(`n${count - 3}`, 'out_value', 'surface', 'in_colour');
    const lists = `<nodes>${nodes.join('')}</nodes><edges>${edges.join('')}</edges>`;
    return `<?xml version="1.0" encoding="UTF-8"?>\n<material version="1">${lists}</material>\n`;
}

/** Processor time that a process has used so far. */
function processorTime(pid) {
    const fields = readFileSync(`/proc/${pid}/stat`, 'utf8').split(') ')[1].split(' ');
    const tick = 10;
    return tick * (Number(fields[11]) + Number(fields[12]));
}

/** Processor time that the page's process has used so far. */
async function pageTime(page) {
    const client = await page.context().newCDPSession(page);
    await client.send('Performance.enable');
    const { metrics } = await client.send('Performance.getMetrics');
    await client.detach();
    return 1000 * metrics.find(({ name }) => name === 'ProcessTime').value;
}

async function withPage(count, work) {
    const file = `${folder}/of_${count}.xml`;
    writeFileSync(file, material(count, Math.ceil(Math.sqrt(count))));
    const { server, address } = await serve(mox, file);
    const before = processorTime(server.pid);
    const page = await open(browser, address, {
        dist,
        viewport: { width: 1600, height: 900 },
    });
    page.setDefaultTimeout(120000);
    await page.waitForFunction(() => performance.getEntriesByName('graph-shown').length > 0);
    const shown = await page.evaluate(() => performance.getEntriesByName('graph-shown')[0].startTime);
    const opening = {
        shown,
        pageTime: await pageTime(page),
        serverTime: processorTime(server.pid) - before,
    };
    await page.evaluate(() => {
        const frame = () => new Promise(requestAnimationFrame);
        const canvas = document.getElementById('canvas');
        window.bench = {
            median: (times) => times.sort((a, b) => a - b)[times.length >> 1],
            wheel: (x, y, isZoom) =>
                canvas.dispatchEvent(
                    new WheelEvent('wheel', {
                        deltaX: x,
                        deltaY: y,
                        ctrlKey: isZoom,
                        clientX: 500,
                        clientY: 300,
                        bubbles: true,
                        cancelable: true,
                    }),
                ),
            async frames(count, step) {
                const times = [];
                for (let i = 0; i < count; ++i) {
                    const before = performance.now();
                    step(i);
                    await frame();
                    await frame(); // changes made in the first one are drawn before this one
                    times.push((performance.now() - before) / 2);
                }
                return window.bench.median(times);
            },
            /** Measures the time from an action until the pixels that show it can be read. */
            async picture(action, isShown = () => true) {
                const before = performance.now();
                action();
                while (!isShown() || !window.moxPicture.isReady()) await frame();
                const gl = document.querySelector('#surface canvas').getContext('webgl2');
                gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(4));
                return performance.now() - before;
            },
            async pictures(count, action) {
                const times = [];
                for (let i = 0; i < count; ++i) times.push(await window.bench.picture(() => action(i)));
                return window.bench.median(times);
            },
        };
    });
    const result = await work(page);
    await page.context().close();
    server.kill();
    return { ...opening, ...result };
}

const pan = (page) =>
    page.evaluate(() => window.bench.frames(40, (i) => window.bench.wheel(i % 2 ? 9 : -7, 5)));

/** Drags the selected node with synthetic mouse events. */
async function drag() {
    const node = document.querySelector('.card.selected').closest('.react-flow__node');
    const { x, y } = node.getBoundingClientRect();
    const mouse = (type, way) => {
        const at = { clientX: x + 20 + way, clientY: y + 20 + way };
        return new MouseEvent(type, { view: window, bubbles: true, cancelable: true, ...at });
    };
    const nothingMoves = () => window.moxEditor.store.get().moves.nodes.size === 0;
    node.dispatchEvent(mouse('mousedown', 0));
    window.dispatchEvent(mouse('mousemove', 5));
    const time = await window.bench.frames(40, (i) => window.dispatchEvent(mouse('mousemove', 6 + i)));
    if (nothingMoves()) throw new Error('the node does not follow the mouse');
    window.dispatchEvent(mouse('mouseup', 46));
    return time;
}

async function view(page) {
    const far = await pan(page);
    await page.evaluate(() => {
        window.moxEditor.selection.selectIds([[...window.moxEditor.store.get().document.numbers.keys()][30]]);
        document.getElementById('canvas').focus();
    });
    await page.keyboard.press('f'); // to zoom 1
    await page.locator('.card').first().waitFor();
    const near = await pan(page);
    return { far, near, drag: await page.evaluate(drag) };
}

async function edit(page) {
    await page.waitForFunction(() => window.moxPicture?.renderer.compileCount > 0);
    await page.waitForFunction(() => window.moxPicture.isReady());
    return page.evaluate(async () => {
        const editor = window.moxEditor;
        const { renderer } = window.moxPicture;
        const structure = [];
        for (let i = 0; i < 15; ++i) {
            const value = i % 2 ? 'Addition' : 'Multiply';
            const count = renderer.compileCount;
            const change = () =>
                editor.values.setProperties([{ node: 'n0', name: 'Function', kind: 'enum', value }]);
            structure.push(await window.bench.picture(change, () => renderer.compileCount > count));
        }
        const count = renderer.compileCount;
        const value = await window.bench.pictures(30, (i) => {
            const text = `${(i % 10) / 10} 0.5 0.5`;
            const colour = { node: 'tint', name: 'Default Colour', kind: 'colour', value: text };
            editor.values.setProperties([colour], 'bench');
        });
        const frame = await window.bench.pictures(30, () => window.moxPicture.drawSoon());
        await new Promise((resolve) => setTimeout(resolve, 1500));
        return {
            structure: window.bench.median(structure),
            value,
            frame,
            compiled: renderer.compileCount - count,
        };
    });
}

const round = (result) =>
    Object.fromEntries(Object.entries(result).map(([name, value]) => [name, Math.round(10 * value) / 10]));
const edits = await withPage(30, edit);
console.log('30 nodes', round(edits));
const views = {};
for (const count of [500, 2000, 10000]) {
    views[count] = await withPage(count, view);
    console.log(`${count} nodes`, round(views[count]));
}
const bars = [
    ['structural edit to picture, 30 nodes', edits.structure, 100],
    ['value to picture, in frames of the picture', edits.value / edits.frame, 1.5],
    ['programs compiled for values', edits.compiled, 0],
    ['2,000 nodes open to the first frame', views[2000].shown, 1000],
    ['panning at zoom 1, 500 nodes', views[500].near, 16.7],
    ['dragging at zoom 1, 500 nodes', views[500].drag, 16.7],
    ['panning at zoom 1, 10,000 nodes', views[10000].near, 33],
    ['dragging at zoom 1, 10,000 nodes', views[10000].drag, 33],
];
console.table(bars.map(([what, measured, bar]) => ({ what, measured: measured.toFixed(1), bar })));
await browser.close();
rmSync(folder, { recursive: true });
