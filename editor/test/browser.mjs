// Proof in a browser: drives Debian's Chromium through the page that `mox edit` serves.
// Usage: node test/browser.mjs MOX [DIST], with MOX the program and DIST the folder of a page that is
// tested in place of the one in the program

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { copyFileSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { after, before, test } from 'node:test';
import * as drive from './drive.mjs';

const [mox, dist] = process.argv.slice(2);
const examples = new URL('../../examples/', import.meta.url).pathname;
const axe = new URL('../node_modules/axe-core/axe.min.js', import.meta.url).pathname;
const emptyMaterial = '<?xml version="1.0" encoding="UTF-8"?>\n<material version="1">\n</material>\n';
const folder = mkdtempSync(`${tmpdir()}/mox-editor-`);
const servers = [];
let browser;

before(async () => {
    browser = await drive.launch();
});

after(async () => {
    await browser.close();
    for (const server of servers) server.kill('SIGKILL');
    rmSync(folder, { recursive: true });
});

async function serve(file, environment) {
    const served = await drive.serve(mox, file, environment);
    servers.push(served.server);
    return served;
}

const open = (address) => drive.open(browser, address, { dist });

let fileCount = 0;

async function prepare(name, text) {
    const file = `${folder}/${name}_${++fileCount}.xml`;
    if (text) writeFileSync(file, text);
    else copyFileSync(`${examples}${name}.xml`, file);
    const { server, address } = await serve(file);
    return { file, server, page: await open(address) };
}

const state = (page) =>
    page.evaluate(() => {
        const { document, undo, problems, unsaved } = window.moxEditor.get();
        const edges = [...document.edges.values()].map(({ record: e }) =>
            [`${e.tail}.${e.tailPort}`, `${e.head}.${e.headPort}`].join(' '),
        );
        const ids = [...document.nodes.values()].map((node) => node.record.id);
        return { ids: ids.sort(), edges: edges.sort(), undo, problems, unsaved };
    });

const until = (page, isDone, argument) => page.waitForFunction(isDone, argument);
const hasNode = (page, id) => until(page, (name) => window.moxEditor.get().document.numbers.has(name), id);
const card = (page, id) => page.locator(`.card[aria-label$="node ${id}"]`);

async function middle(locator) {
    const { x, y, width, height } = await locator.boundingBox();
    return [x + width / 2, y + height / 2];
}

const port = (page, id, name) => card(page, id).locator(`.react-flow__handle[data-handleid="${name}"]`);

async function drag(page, from, to) {
    await page.mouse.move(...from);
    await page.mouse.down();
    await page.mouse.move((from[0] + to[0]) / 2, (from[1] + to[1]) / 2, { steps: 3 });
    await page.mouse.move(...to, { steps: 3 });
    await page.mouse.up();
}

/** Drags from a port to the empty graph, and takes what the list offers for some letters. */
async function add(page, id, name, by, letters, newId) {
    const from = await middle(port(page, id, name));
    await drag(page, from, [from[0] + by[0], from[1] + by[1]]);
    await page.locator('.palette input').fill(letters);
    await page.locator('.palette li').first().click();
    await hasNode(page, newId);
}

/** The mean and the spread of the middle of the picture. */
const picture = (page) =>
    page.evaluate(async () => {
        await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
        const from = document.querySelector('#surface canvas');
        const canvas = new OffscreenCanvas(64, 64);
        const context = canvas.getContext('2d');
        context.drawImage(from, 96, 96, 64, 64, 0, 0, 64, 64);
        const { data } = context.getImageData(0, 0, 64, 64);
        const mean = [0, 1, 2].map(
            (c) => data.filter((_, i) => i % 4 === c).reduce((s, v) => s + v, 0) / 4096,
        );
        return { mean };
    });

const tintedEdges = [
    'constant.read maths.in_value2',
    'maths.out_value surface.in_colour',
    'texture.out_colour maths.in_value1',
    'uvSet.read texture.in_uv',
];

test('a tinted texture is built from nothing by mouse, undone and done again, and saved', async () => {
    const { file, page } = await prepare('by_mouse', emptyMaterial);
    await page.mouse.dblclick(700, 300);
    await page.locator('.palette input').fill('surf');
    await page
        .locator('.palette li', { hasText: /^Surface/ })
        .first()
        .click();
    await hasNode(page, 'surface');
    await add(page, 'surface', 'in_colour', [-140, 0], 'maths', 'maths');
    await add(page, 'maths', 'in_value1', [-130, -60], 'texture', 'texture');
    await add(page, 'maths', 'in_value2', [-130, 180], 'constant', 'constant');
    await add(page, 'texture', 'in_uv', [-60, 120], 'uv set', 'uvSet');
    await card(page, 'maths').locator('.card-header').click();
    await page.getByLabel('Function', { exact: true }).selectOption('Addition');
    await until(page, () => window.moxEditor.get().undo !== '' && window.moxEditor.get().programs !== null);
    await until(page, () => !window.moxEditor.get().isPictureStale);
    const built = await state(page);
    assert.deepEqual(built.edges, tintedEdges);
    assert.deepEqual(
        built.problems.filter((problem) => problem.severity === 'error'),
        [],
    );

    // One step for each action, down to nothing, and up again.
    let steps = 0;
    for (; (await state(page)).undo !== ''; ++steps) {
        const before = await page.evaluate(() => window.moxEditor.get().revision);
        await page.getByRole('button', { name: 'Undo' }).click();
        await until(page, (revision) => window.moxEditor.get().revision > revision, before);
    }
    assert.equal(steps, 6);
    assert.deepEqual((await state(page)).ids, []);
    for (; steps > 0; --steps) {
        const before = await page.evaluate(() => window.moxEditor.get().revision);
        await page.keyboard.press('Control+Shift+Z');
        await until(page, (revision) => window.moxEditor.get().revision > revision, before);
    }
    assert.deepEqual((await state(page)).edges, tintedEdges);

    await page.keyboard.press('Control+s');
    await until(page, () => !window.moxEditor.get().unsaved);
    const saved = readFileSync(file, 'utf8');
    execFileSync(mox, ['format', file]);
    assert.equal(readFileSync(file, 'utf8'), saved, 'a saved document is canonical');
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test('the same is built by keyboard alone', async () => {
    const { page } = await prepare('by_keyboard', emptyMaterial);
    const keys = async (...names) => {
        for (const name of names) await page.keyboard.press(name);
    };
    const choose = async (letters) => {
        await page.locator('.palette input').waitFor();
        await page.keyboard.type(letters);
        await page.keyboard.press('Enter');
    };
    await page.keyboard.press('Tab');
    await choose('uv set');
    await hasNode(page, 'uvSet');
    for (const [letters, id] of [
        ['texture', 'texture'],
        ['maths', 'maths'],
        ['surface', 'surface'],
    ]) {
        await until(page, () => window.moxEditor.get().selection.size === 1);
        await keys('Tab');
        await choose(letters);
        await hasNode(page, id);
    }
    await keys('Escape', 'Space');
    await choose('constant');
    await hasNode(page, 'constant');
    await until(page, () => window.moxEditor.get().selection.size === 1);
    await keys('c');
    await choose('constant');
    await choose('in2');
    await until(page, () => window.moxEditor.get().document.edges.size === 4);
    assert.deepEqual((await state(page)).edges, tintedEdges);
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test('a value goes to the picture without compiling; structure does not', async () => {
    const { page } = await prepare('rim_light');
    await page.getByRole('button', { name: 'Lay out' }).last().click();
    await until(page, () => window.moxPicture.renderer.compileCount === 1);
    const before = await picture(page);
    await page.evaluate(() => window.moxEditor.selectIds(['base']));
    const red = page.getByLabel('Default Colour, red');
    await drag(page, await middle(red), [(await middle(red))[0] + 80, (await middle(red))[1]]);
    await page.waitForTimeout(1500); // the compilation that proves it
    const after = await picture(page);
    assert.ok(after.mean[0] > before.mean[0] + 20, `${before.mean} and ${after.mean}`);
    assert.equal(await page.evaluate(() => window.moxPicture.renderer.compileCount), 1);
    await page.keyboard.press('Escape');
    const changes = await page.evaluate(() => window.moxEditor.get().undo);
    await page.getByRole('button', { name: 'Undo' }).click();
    await until(page, (title) => window.moxEditor.get().undo !== title, changes);
    await page.waitForTimeout(500);
    const undone = await picture(page);
    undone.mean.forEach((value, i) => assert.ok(Math.abs(value - before.mean[i]) < 1));
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test('nodes are copied, cut, pasted and edited together', async () => {
    const { page } = await prepare('tinted_texture');
    await page.getByRole('button', { name: 'Lay out' }).last().click();
    await until(page, () => window.moxEditor.get().undo !== '');
    const start = await state(page);
    await page.evaluate(() => {
        window.moxEditor.selectIds(['paint', 'bumps']);
        document.getElementById('canvas').focus();
    });
    await page.keyboard.press('Control+c');
    await until(page, () => window.moxEditor.get().message === 'Copied.');
    await page.keyboard.press('Control+v');
    await until(page, () => window.moxEditor.get().document.nodes.size === 8);
    const help = page.getByLabel('Help Url', { exact: true }); // the new nodes are selected
    await help.fill('https://example.org/');
    await help.press('Enter');
    await until(page, () =>
        window.moxEditor
            .selectedNodes()
            .every((node) => node.properties.some(({ value }) => value === 'https://example.org/')),
    );
    await page.evaluate(() => document.getElementById('canvas').focus());
    await page.keyboard.press('Control+x');
    await until(page, () => window.moxEditor.get().document.nodes.size === 6);
    await page.keyboard.press('Control+v');
    await until(page, () => window.moxEditor.get().document.nodes.size === 8);
    await page.keyboard.press('Control+d');
    await until(page, () => window.moxEditor.get().document.nodes.size === 10);
    for (let count = 5; count > 0; --count) {
        const before = await page.evaluate(() => window.moxEditor.get().revision);
        await page.keyboard.press('Control+z');
        await until(page, (revision) => window.moxEditor.get().revision > revision, before);
    }
    const end = await state(page);
    assert.deepEqual([end.ids, end.edges, end.undo], [start.ids, start.edges, start.undo]);
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test('lines of programs and nodes find each other', async () => {
    const { page } = await prepare('tinted_texture');
    await page.getByRole('button', { name: 'Lay out' }).last().click();
    await page.getByRole('tab', { name: 'Programs' }).click();
    await page.locator('.cm-line').nth(3).waitFor();
    await page.evaluate(() => window.moxEditor.selectIds(['tinted']));
    const marked = page.locator('.cm-line.marked');
    await marked.first().waitFor();
    const words = (await marked.allTextContents()).join('\n');
    await page.evaluate(() => window.moxEditor.select([]));
    assert.equal(await marked.count(), 0);
    await page
        .locator('.cm-line', { hasText: words.split('\n')[0].trim() })
        .first()
        .click();
    await page.locator('.card.lit').waitFor();
    assert.match(await page.locator('.card.lit').getAttribute('aria-label'), /node tinted$/);
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

test('a checker of accessibility finds nothing serious, in light and dark', async () => {
    const { page } = await prepare('tinted_texture');
    await page.getByRole('button', { name: 'Lay out' }).last().click();
    await page.evaluate(() => {
        window.moxEditor.selectIds(['tint']);
        window.moxEditor.pin({ node: 'tint', port: 'read' });
    });
    await page.evaluate(readFileSync(axe, 'utf8'));
    const views = [
        async () => {},
        () => page.getByRole('tab', { name: 'Programs' }).click(),
        () => page.getByRole('tab', { name: 'Parameters' }).click(),
        () => page.getByRole('button', { name: 'Find' }).click(),
        async () => {
            await page.keyboard.press('Escape');
            await page.getByRole('button', { name: 'Add' }).click();
        },
        async () => {
            await page.keyboard.press('Escape');
            await page.getByRole('button', { name: 'Keys' }).click();
        },
    ];
    const found = new Set();
    for (const view of views) {
        await view();
        for (const colorScheme of ['light', 'dark']) {
            await page.emulateMedia({ colorScheme });
            const { violations } = await page.evaluate(() => window.axe.run());
            for (const { id, impact, nodes } of violations)
                if (impact === 'serious' || impact === 'critical')
                    for (const node of nodes) found.add(`${colorScheme} ${id}: ${node.html.slice(0, 200)}`);
        }
    }
    assert.deepEqual([...found], []);
    await page.context().close();
});

test('two windows show one document', async () => {
    const file = `${folder}/two.xml`;
    copyFileSync(`${examples}tinted_texture.xml`, file);
    const { address } = await serve(file);
    const [left, right] = [await open(address), await open(address)];
    await left.evaluate(() => {
        window.moxEditor.selectIds(['tint']);
        window.moxEditor.deleteSelected(false);
    });
    await until(right, () => !window.moxEditor.get().document.numbers.has('tint'));
    await right.keyboard.press('Control+z');
    await until(left, () => window.moxEditor.get().document.numbers.has('tint'));
    assert.deepEqual(await state(left), await state(right));
    assert.deepEqual([...left.complaints, ...right.complaints], []);
    await left.context().close();
    await right.context().close();
});

test('a file that changes on disk is shown with its difference', async () => {
    const { file, page } = await prepare('tinted_texture');
    writeFileSync(file, readFileSync(file, 'utf8').replace('1 0.9 0.8', '0 0.9 0.8'));
    const notice = page.getByRole('alert');
    await notice.waitFor();
    assert.match(await notice.textContent(), /has changed on disk.*tint/s);
    await page.getByRole('button', { name: 'Load the file' }).click();
    await until(page, () => {
        const { document } = window.moxEditor.get();
        const node = document.nodes.get(document.numbers.get('tint'));
        return node.properties.some((property) => property.value.startsWith('0 0.9'));
    });
    assert.equal(await page.getByRole('alert').count(), 0);
    await page.context().close();
});

test('a server that dies loses nothing that it confirmed', async () => {
    const { file, server, page } = await prepare('rim_light');
    await page.evaluate(() => {
        window.moxEditor.selectIds(['base']);
        window.moxEditor.deleteSelected(false);
    });
    await until(page, () => window.moxEditor.get().unsaved);
    server.kill('SIGKILL');
    await page.getByRole('alert').getByText('lost its server').waitFor();
    await page.evaluate(() => window.moxEditor.selectIds(['rim']));
    await page.keyboard.press('Delete');
    assert.ok(!(await page.evaluate(() => window.moxEditor.get().document.numbers.has('base'))));
    await page.context().close();

    const again = await open((await serve(file)).address);
    await again.getByRole('button', { name: 'Restore them' }).click();
    await until(again, () => !window.moxEditor.get().document.numbers.has('base'));
    await until(again, () => window.moxEditor.get().waiting === null);
    assert.deepEqual(again.complaints, []);
    await again.context().close();
});
