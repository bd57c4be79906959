// Measures the editor in Debian's Chromium, without a graphics card. Times are medians in milliseconds. Of opening:
// `shown` is when the first frame of the graph was on the screen, `pageTime` and `serverTime` are the processor times that
// the page's process and the server had used by then.
// Usage: node bench/editor.mjs MOX [DIST], with DIST the folder of a page other than the one in MOX; the page's
// packages must be installed (npm ci in editor/)

import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { launch, open, serve } from '../editor/test/drive.mjs';

const [mox, dist] = process.argv.slice(2);
const folder = mkdtempSync(`${tmpdir()}/mox-editor-bench-`);
const browser = await launch();

/** Chains of additions, one below the other, that all come together in a surface. */
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

/** Processor time of a process so far. */
function processorTime(pid) {
    const fields = readFileSync(`/proc/${pid}/stat`, 'utf8').split(') ')[1].split(' ');
    const tick = 10;
    return tick * (Number(fields[11]) + Number(fields[12]));
}

/** Processor time of the page's process so far. */
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
                    await frame(); // what the first one has changed is drawn before this one
                    times.push((performance.now() - before) / 2);
                }
                return window.bench.median(times);
            },
            async until(isDone) {
                const before = performance.now();
                while (!isDone()) await frame();
                return performance.now() - before;
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

async function view(page) {
    const far = await pan(page);
    await page.evaluate(() => {
        window.moxEditor.selectIds([[...window.moxEditor.get().document.numbers.keys()][30]]);
        document.getElementById('canvas').focus();
    });
    await page.keyboard.press('f'); // to zoom 1
    await page.locator('.card').first().waitFor();
    const near = await pan(page);
    const drag = await page.evaluate(() => {
        const editor = window.moxEditor;
        const node = editor.selectedNodes()[0];
        const from = editor.placeOf(node);
        const step = (i) => editor.drag(new Map([[node.number, { x: from.x + i, y: from.y + i }]]));
        return window.bench.frames(40, step);
    });
    return { far, near, drag };
}

async function edit(page) {
    await page.waitForFunction(() => window.moxPicture?.renderer.compileCount > 0);
    return page.evaluate(async () => {
        const editor = window.moxEditor;
        const { renderer } = window.moxPicture;
        const structure = [];
        for (let i = 0; i < 15; ++i) {
            const count = renderer.compileCount;
            editor.setProperties([
                {
                    node: 'n0',
                    name: 'Function',
                    kind: 'enum',
                    value: i % 2 ? 'Addition' : 'Multiply',
                },
            ]);
            structure.push(await window.bench.until(() => renderer.compileCount > count));
        }
        const count = renderer.compileCount;
        const value = await window.bench.frames(30, (i) => {
            const text = `${(i % 10) / 10} 0.5 0.5`;
            editor.setProperties(
                [
                    {
                        node: 'tint',
                        name: 'Default Colour',
                        kind: 'colour',
                        value: text,
                    },
                ],
                'bench',
            );
        });
        const frame = await window.bench.frames(30, () => window.moxPicture.drawSoon());
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
console.log('30 nodes', round(await withPage(30, edit)));
for (const count of [500, 2000, 10000]) console.log(`${count} nodes`, round(await withPage(count, view)));
await browser.close();
rmSync(folder, { recursive: true });
