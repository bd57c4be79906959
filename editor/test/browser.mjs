// Tests the page that `mox edit` serves in Debian's Chromium.
// Usage: node test/browser.mjs MOX [DIST]. MOX is the program, and DIST is the folder of a page to test instead
// of the page in the program.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { copyFileSync, cpSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { after, before, test } from 'node:test';
import * as drive from './drive.mjs';
import { card, change, drag, middle, port, save, until } from './drive.mjs';

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
    rmSync(folder, { recursive: true, maxRetries: 20 });
});

async function serve(file, environment) {
    const served = await drive.serve(mox, file, environment);
    servers.push(served.server);
    return served;
}

const open = (address) => drive.open(browser, address, { dist });

let fileCount = 0;

/** @param material the name of an example, or a document */
async function prepare(material, name = 'material') {
    const file = `${folder}/${name}_${++fileCount}.xml`;
    if (material.startsWith('<')) writeFileSync(file, material);
    else copyFileSync(`${examples}${material}.xml`, file);
    const { server, address } = await serve(file);
    return { file, server, address, page: await open(address) };
}

const pageTest = (title, material, run) =>
    test(title, async () => {
        const prepared = await prepare(material);
        await run(prepared);
        assert.deepEqual(prepared.page.complaints, []);
        await prepared.page.context().close();
    });

const state = (page) =>
    page.evaluate(() => {
        const { document, undo, problems, unsaved } = window.moxEditor.store.get();
        const edges = [...document.edges.values()].map(({ record: e }) =>
            [`${e.tail}.${e.tailPort}`, `${e.head}.${e.headPort}`].join(' '),
        );
        const ids = [...document.nodes.values()].map((node) => node.record.id);
        return { ids: ids.sort(), edges: edges.sort(), undo, problems, unsaved };
    });

const hasNode = (page, id) =>
    until(page, (name) => window.moxEditor.store.get().document.numbers.has(name), id);

/** Drags from a port to the empty graph, and chooses the first entry that the list shows for some letters. */
async function add(page, id, name, by, letters, newId) {
    const from = await middle(port(page, id, name));
    await drag(page, from, [from[0] + by[0], from[1] + by[1]]);
    await pick(page, letters);
    await hasNode(page, newId);
}

/** Chooses the first entry that the open list shows for some letters. */
async function pick(page, letters) {
    await page.locator('.palette input').fill(letters);
    await page.locator('.palette li').first().click();
}

async function layOut(page) {
    await page.getByRole('button', { name: 'Lay out' }).last().click();
    await until(page, () => window.moxEditor.store.get().undo !== '');
}

const remove = (page, id) =>
    page.evaluate((wanted) => {
        window.moxEditor.selection.selectIds([wanted]);
        window.moxEditor.graph.deleteSelected(false);
    }, id);

const undo = (page) => change(page, () => page.keyboard.press('Control+z'));
const select = (page, ...ids) => page.evaluate((wanted) => window.moxEditor.selection.selectIds(wanted), ids);

/** The mean colour in the middle of the image. */
const picture = (page) =>
    page.evaluate(async () => {
        await new Promise((resolve) => requestAnimationFrame(() => requestAnimationFrame(resolve)));
        const context = new OffscreenCanvas(64, 64).getContext('2d');
        context.drawImage(document.querySelector('#surface canvas'), 96, 96, 64, 64, 0, 0, 64, 64);
        const { data } = context.getImageData(0, 0, 64, 64);
        return [0, 1, 2].map((c) => data.filter((_, i) => i % 4 === c).reduce((s, v) => s + v, 0) / 4096);
    });

// The nodes of a painted brick wall: the initial id, the final id, and the properties to set in the inspector.
const brickNodes = `
uvSet, uv; Name = uv0
texture, paint; Name = paintTexture; Basic Colour = true; Description = The painted colours.
texture2, bumps; Name = normalTexture; Colour Type = Normal
constant, tint; Name = tint; Default Colour, red = 1; Default Colour, green = 0.9; Default Colour, blue = 0.8;\
 Description = Multiplies the painted colours.
maths, tinted`
    .trim()
    .split('\n')
    .map((line) => {
        const [ids, ...values] = line.split(/; */);
        return [...ids.split(', '), values.map((value) => value.split(' = '))];
    });
const brickTextures = [
    ['paintTexture', 'textures/paint.png'],
    ['normalTexture', 'textures/normal.png'],
];

/** Saves, and compares the file with the example: only the positions of nodes may differ. */
async function expectBricks(page, file) {
    await save(page);
    const saved = readFileSync(file, 'utf8');
    execFileSync(mox, ['format', file]);
    assert.equal(readFileSync(file, 'utf8'), saved, 'a saved document is canonical');
    const download = page.waitForEvent('download');
    await page.keyboard.press('Control+Shift+S');
    assert.equal(readFileSync(await (await download).path(), 'utf8'), saved);
    const { stdout } = spawnSync(mox, ['diff', `${examples}tinted_texture.xml`, file], { encoding: 'utf8' });
    const others = stdout.split('\n').filter((line) => line !== '' && !line.includes('Position'));
    assert.deepEqual(others, []);
}

pageTest('a brick wall is built by mouse, undone and redone', emptyMaterial, async ({ file, page }) => {
    await page.mouse.dblclick(700, 300);
    await pick(page, 'surface');
    await hasNode(page, 'surface');
    await add(page, 'surface', 'in_colour', [-140, -60], 'maths', 'maths');
    await add(page, 'maths', 'in_value1', [-130, -60], 'texture', 'texture');
    await add(page, 'texture', 'in_uv', [60, 320], 'uv set', 'uvSet');
    await add(page, 'maths', 'in_value2', [-130, 80], 'constant', 'constant');
    await add(page, 'surface', 'in_normal', [-240, 220], 'texture', 'texture2');
    const uv = [port(page, 'uvSet', 'read'), port(page, 'texture2', 'in_uv')];
    await change(page, async () => drag(page, await middle(uv[0]), await middle(uv[1])));
    let actions = 7;
    for (const [id, newId, values] of brickNodes) {
        await card(page, id).locator('.card-header').click();
        for (const [label, value] of [...values, ['id', newId]]) {
            const field = page.locator('#inspector').getByLabel(label, { exact: true });
            await change(page, async () => {
                if (value === 'true') await field.click();
                else if ((await field.evaluate((element) => element.tagName)) === 'SELECT')
                    await field.selectOption(value);
                else {
                    await field.fill(value);
                    await field.blur();
                }
            });
            ++actions;
        }
    }
    await page.getByRole('tab', { name: 'Parameters' }).click();
    for (const [name, value] of brickTextures) {
        const field = page.getByLabel(name, { exact: true });
        await field.fill(value);
        await change(page, () => field.blur());
        ++actions;
    }
    await drive.settle(page);
    const built = await state(page);

    // Undo and redo have one step per action.
    let steps = 0;
    for (; (await state(page)).undo !== ''; ++steps)
        await change(page, () => page.getByRole('button', { name: 'Undo' }).click());
    assert.equal(steps, actions);
    assert.deepEqual((await state(page)).ids, []);
    for (; steps > 0; --steps) await change(page, () => page.keyboard.press('Control+Shift+Z'));
    const again = await state(page);
    assert.deepEqual([again.ids, again.edges, again.undo], [built.ids, built.edges, built.undo]);
    await expectBricks(page, file);
});

pageTest('the same is built by keyboard alone', emptyMaterial, async ({ file, page }) => {
    const keys = async (...names) => {
        for (const name of names) await page.keyboard.press(name);
    };
    const choose = async (letters) => {
        await page.locator('.palette input').waitFor();
        await page.keyboard.type(letters);
        await page.keyboard.press('Enter');
    };
    const goTo = async (label) => {
        const isThere = () => page.evaluate((wanted) => document.activeElement.ariaLabel === wanted, label);
        for (let count = 0; !(await isThere()); ++count) {
            assert.ok(count < 80, `the Tab key does not lead to ${label}`);
            await page.keyboard.press('Tab');
        }
    };
    const enter = async (label, value) => {
        await goTo(label);
        const isField = () => page.evaluate(() => document.activeElement.tagName !== 'SELECT');
        await change(page, async () => {
            if (value === 'true') await keys('Space');
            else {
                if (await isField()) await keys('Control+a');
                await page.keyboard.type(value);
                await keys('Tab');
            }
        });
    };
    const find = async (id) => {
        await keys('Control+f');
        await choose(id);
    };
    const connect = async (from, to) => {
        await keys('c');
        await choose(from);
        await change(page, () => choose(to));
    };
    await keys('Tab');
    await choose('uv set');
    await hasNode(page, 'uvSet');
    for (const id of ['texture', 'maths', 'surface']) {
        await until(page, () => window.moxEditor.store.get().selection.size === 1);
        await keys('Tab');
        await choose(id);
        await hasNode(page, id);
    }
    for (const [id, output, input] of [
        ['constant', 'constant', 'in2'],
        ['texture2', 'colour', 'normal'],
    ]) {
        await keys('Escape', 'Space');
        await choose(id.replace('2', ''));
        await hasNode(page, id);
        await until(page, () => window.moxEditor.store.get().selection.size === 1);
        await connect(output, input);
    }
    await connect('uv', 'uv set');
    for (const [id, newId, values] of brickNodes) {
        await find(id);
        await keys('Enter', 'Shift+Tab');
        await enter('id', newId);
        for (const [label, value] of values) await enter(label, value);
        await keys('Escape');
    }
    await page.getByRole('tab', { name: 'Parameters' }).focus(); // in the graph, Tab adds nodes
    await keys('Enter');
    for (const [name, value] of brickTextures) await enter(name, value);
    await expectBricks(page, file);
});

pageTest('several nodes are selected by keyboard', 'tinted_texture', async ({ page }) => {
    await layOut(page);
    await page.locator('#canvas').focus();
    const find = async (id, key) => {
        await page.keyboard.press('Control+f');
        await page.locator('.palette input').fill(id);
        await page.keyboard.press(key);
    };
    const press = (key) => page.keyboard.press(key);
    const selected = () =>
        page.evaluate(() => window.moxEditor.selection.nodes().map(({ record }) => record.id));
    const walks = [
        [() => find('paint', 'Enter'), ['paint']],
        [() => press('Alt+Shift+ArrowRight'), ['paint', 'tinted']],
        [() => press('Alt+Shift+ArrowRight'), ['paint', 'tinted', 'surface']],
        [() => press('Alt+Shift+ArrowLeft'), ['paint', 'surface', 'tinted']], // becomes the last one again
        [() => find('bumps', 'Shift+Enter'), ['paint', 'surface', 'tinted', 'bumps']],
        [() => press('Alt+ArrowLeft'), ['uv']],
    ];
    for (const [walk, expected] of walks) {
        await walk();
        assert.deepEqual(await selected(), expected);
    }
    await press('Shift+ArrowRight');
    assert.equal((await selected()).length, 2);
    await change(page, () => press('Control+d'));
    assert.equal((await state(page)).ids.length, 8);
});

const adjusting = emptyMaterial.replace(
    '</material>',
    '<nodes><node id="adjust" type="ColourAdjust" version="0"/></nodes>\n</material>',
);
pageTest('a typed number may be outside the range of its field', adjusting, async ({ page }) => {
    await select(page, 'adjust');
    const field = page.getByLabel('Default Amount', { exact: true });
    await field.fill('9');
    await change(page, () => page.keyboard.press('Enter'));
    assert.equal(await field.inputValue(), '9');
    await change(page, () => page.keyboard.press('ArrowUp'));
    assert.equal(await field.inputValue(), '4');
    await field.fill('0,5');
    await page.keyboard.press('Enter');
    await until(page, () => window.moxEditor.store.get().message.startsWith('"0,5" is neither'));
    assert.equal(await field.inputValue(), '4');
});

pageTest('a value reaches the picture without compiling', 'rim_light', async ({ page }) => {
    await layOut(page);
    await until(page, () => window.moxPicture?.renderer.compileCount === 1);
    const before = await picture(page);
    const values = () => JSON.stringify(window.moxEditor.store.get().parameters);
    const valuesBefore = await page.evaluate(values);
    await select(page, 'base');
    const [x, y] = await middle(page.getByLabel('Default Colour, red'));
    await drag(page, [x, y], [x + 80, y]);
    await until(page, () => window.moxEditor.store.get().sentValues.size === 0); // a compilation has confirmed the values
    const after = await picture(page);
    assert.ok(after[0] > before[0] + 20, `${before} and ${after}`);
    assert.equal(await page.evaluate(() => window.moxPicture.renderer.compileCount), 1);
    await page.keyboard.press('Escape');
    await page.getByRole('button', { name: 'Undo' }).click();
    await until(page, (old) => JSON.stringify(window.moxEditor.store.get().parameters) === old, valuesBefore);
    const undone = await picture(page);
    undone.forEach((value, i) => assert.ok(Math.abs(value - before[i]) < 1));
});

pageTest('a move during a compilation does not delay its result', 'rim_light', async ({ page }) => {
    await drive.settle(page);
    const before = await page.evaluate(() => {
        const editor = window.moxEditor;
        editor.selection.selectIds(['base']);
        const { request } = editor.server.connection;
        editor.server.connection.request = function (message, bytes) {
            const reply = request.call(this, message, bytes);
            if (message.do === 'compile') {
                editor.server.connection.request = request;
                editor.places.nudge({ x: 1, y: 0 });
            }
            return reply;
        };
        const value = { node: 'rimGlow', name: 'Function', kind: 'enum', value: 'Addition' };
        editor.values.setProperties([value]);
        return editor.store.get().programs.fragment;
    });
    await until(page, (text) => window.moxEditor.store.get().programs.fragment !== text, before);
});

pageTest('nodes are copied, cut, pasted and edited together', 'tinted_texture', async ({ page }) => {
    await layOut(page);
    const start = await state(page);
    const press = async (key, count) => {
        await page.locator('#canvas').focus();
        await page.keyboard.press(key);
        await until(page, (wanted) => window.moxEditor.store.get().document.nodes.size === wanted, count);
    };
    await select(page, 'paint', 'bumps');
    await press('Control+c', 6);
    await until(page, () => window.moxEditor.store.get().message === 'Copied.');
    await press('Control+v', 8);
    const help = page.getByLabel('Help Url', { exact: true }); // the new nodes are selected
    await help.fill('https://example.org/');
    await help.press('Enter');
    await until(page, () =>
        window.moxEditor.selection
            .nodes()
            .every((node) => node.properties.some(({ value }) => value === 'https://example.org/')),
    );
    await press('Control+x', 6);
    await press('Control+v', 8);
    await press('Control+d', 10);
    for (let count = 5; count > 0; --count) await undo(page);
    const end = await state(page);
    assert.deepEqual([end.ids, end.edges, end.undo], [start.ids, start.edges, start.undo]);
});

/** Converts a point of the graph to the screen, relative to a node. */
const onScreen = (page, id, { x, y }) =>
    card(page, id).evaluate(
        (element, at) => {
            const { document } = window.moxEditor.store.get();
            const place = window.moxEditor.places.placeOf(document.nodes.get(document.numbers.get(at.id)));
            const box = element.getBoundingClientRect();
            const zoom = box.width / element.offsetWidth;
            return [box.x + (at.x - place.x) * zoom, box.y + (at.y - place.y) * zoom];
        },
        { id, x, y },
    );

pageTest('frames, notes and points are drawn, moved and copied', 'rim_light', async ({ file, page }) => {
    execFileSync(mox, ['format', '--tidy', file]);
    await page.getByRole('button', { name: 'Load the file' }).click();
    const original = readFileSync(file, 'utf8');
    const layers = () =>
        page.evaluate(() => {
            const editor = window.moxEditor;
            const { document } = editor.store.get();
            const entries = (map, value) => [...map.values()].map((each) => [each.record.id, value(each)]);
            return {
                places: Object.fromEntries(entries(document.nodes, (node) => editor.places.placeOf(node))),
                annotations: [...document.annotations.values()].map(({ record }) => record),
                points: [...document.edges.values()].flatMap(({ record }) => record.points ?? []),
            };
        });
    const isFocused = (label) =>
        until(page, (wanted) => document.activeElement?.getAttribute('aria-label') === wanted, label);
    const holds = ({ x, y, width, height }, at) =>
        x <= at.x && at.x <= x + width && y <= at.y && at.y <= y + height;

    // A frame around two nodes is moved together with them, and resized at its corner.
    await until(page, () => window.moxEditor.store.get().fileChange === null);
    await select(page, 'facing', 'rim');
    await page.locator('#canvas').focus();
    await change(page, () => page.keyboard.press('g'));
    await isFocused('title');
    await page.keyboard.type('Rim');
    await change(page, () => page.keyboard.press('Enter'));
    const before = await layers();
    const [frame] = before.annotations;
    assert.equal(frame.text, 'Rim');
    const title = { x: frame.x + frame.width / 2, y: frame.y + 8 };
    const from = await onScreen(page, 'facing', title);
    await change(page, () => drag(page, from, [from[0] - 30, from[1] + 40]));
    const after = await layers();
    assert.ok(Object.values(before.places).some(({ x }) => x > frame.x + frame.width));
    const way = { x: after.annotations[0].x - frame.x, y: after.annotations[0].y - frame.y };
    assert.ok(way.x < 0 && way.y > 0);
    for (const [id, { x, y }] of Object.entries(before.places)) {
        const { x: wayX, y: wayY } = holds(frame, { x, y }) ? way : { x: 0, y: 0 };
        assert.deepEqual(after.places[id], { x: x + wayX, y: y + wayY }, id);
    }
    await undo(page);
    assert.deepEqual(await layers(), before);
    const corner = await onScreen(page, 'facing', {
        x: frame.x + frame.width,
        y: frame.y + frame.height,
    });
    await change(page, () => drag(page, [corner[0] - 2, corner[1] - 2], [corner[0] + 38, corner[1] + 18]));
    const [resized] = (await layers()).annotations;
    assert.ok(resized.width > frame.width && resized.height > frame.height && resized.x === frame.x);
    await page.getByLabel(/Graph of .* frame “Rim” is selected/).waitFor();

    // A copy includes the contents of the frame; deleting the frame does not delete them.
    await page.locator('#canvas').focus();
    await page.keyboard.press('Control+c');
    await until(page, () => window.moxEditor.store.get().message === 'Copied.');
    await change(page, () => page.keyboard.press('Control+v'));
    const heldCount = Object.values(before.places).filter((place) => holds(resized, place)).length;
    assert.equal((await state(page)).ids.length, 6 + heldCount);
    assert.equal((await layers()).annotations.length, 2);
    await undo(page);
    await page.evaluate(() => window.moxEditor.selection.selectIds([], ['frame']));
    await change(page, () => page.keyboard.press('Delete'));
    assert.equal((await state(page)).ids.length, 6);
    await undo(page);

    // A note is found by its text, and the inspector shows the text.
    await change(page, () => page.keyboard.press('n'));
    await isFocused('text');
    await page.keyboard.type('Shines at the edge.');
    await change(page, () => page.keyboard.press('Control+Enter'));
    await page.locator('#canvas').focus();
    await page.keyboard.press('Control+f');
    await page.locator('.palette input').fill('shines');
    await page.keyboard.press('Enter');
    await until(page, () => document.querySelector('#inspector textarea')?.value === 'Shines at the edge.');

    // The text of a note and the title of a frame are edited in place; Esc discards the changes.
    await page.keyboard.press('a');
    const textAt = (kind) => layers().then((all) => all.annotations.find((each) => each.kind === kind));
    for (const [kind, key, text] of [
        ['note', 'Control+Enter', 'Shines.'],
        ['frame', 'Enter', 'Edge'],
    ]) {
        const { x, y } = await textAt(kind);
        await page.mouse.dblclick(...(await onScreen(page, 'facing', { x: x + 12, y: y + 12 })));
        await page.locator('.annotation-text').fill('Not this');
        await page.keyboard.press('Escape');
        await page.mouse.dblclick(...(await onScreen(page, 'facing', { x: x + 12, y: y + 12 })));
        await page.locator('.annotation-text').fill(text);
        await change(page, () => page.keyboard.press(key));
        assert.equal((await textAt(kind)).text, text);
    }

    // Points of an edge are added, moved and deleted by mouse and by keyboard.
    await page.keyboard.press('a');
    const ends = [port(page, 'base', 'read'), port(page, 'surface', 'in_colour')];
    const [[x1, y1], [x2, y2]] = [await middle(ends[0]), await middle(ends[1])];
    await change(page, () => page.mouse.dblclick((x1 + x2) / 2, (y1 + y2) / 2));
    const [point] = (await layers()).points;
    const held = await onScreen(page, 'base', point);
    const target = [held[0] + 10, held[1] + 70];
    await change(page, () => drag(page, held, target));
    const [dragged] = (await layers()).points;
    const shown = await onScreen(page, 'base', dragged);
    assert.ok(Math.hypot(shown[0] - target[0], shown[1] - target[1]) < 2, `the point is at ${shown}`);
    await change(page, () => page.keyboard.press('Control+Shift+ArrowDown'));
    assert.equal((await layers()).points[0].y, dragged.y + 40);
    await change(page, () => page.keyboard.press('Delete'));
    assert.deepEqual((await layers()).points, []);
    assert.equal((await state(page)).edges.length, 5, 'the edge is still there');
    await select(page, 'base');
    await page.keyboard.press('e');
    await change(page, () => page.keyboard.press('b'));
    await page.getByLabel('point 1, y', { exact: true }).fill('-40');
    await change(page, () => page.keyboard.press('Enter'));
    assert.equal((await layers()).points[0].y, -40);

    await page.locator('#canvas').focus();
    await save(page);
    const saved = readFileSync(file, 'utf8');
    assert.match(saved, /<material version="2">/);
    execFileSync(mox, ['format', '--check', file]);
    while ((await state(page)).undo !== '') await undo(page);
    await save(page);
    assert.equal(readFileSync(file, 'utf8'), original, 'without the new parts it is as before');
});

pageTest('lines of programs and nodes find each other', 'tinted_texture', async ({ page }) => {
    await layOut(page);
    await page.getByRole('tab', { name: 'Programs' }).click();
    await page.locator('.cm-line').nth(3).waitFor();
    const language = page.getByLabel('Language');
    const targets = await language.locator('option').allTextContents();
    assert.ok(targets.includes('wgsl'), `${targets}`);
    const marked = page.locator('.cm-line.marked');
    for (const target of targets) {
        await language.selectOption(target);
        await until(page, () => document.querySelector('.cm-content')?.textContent.length > 100);
        if (target === 'spirv') continue;
        await select(page, 'tinted');
        await until(page, () => document.querySelectorAll('.cm-line.marked').length > 3);
        const [first] = await marked.allTextContents();
        assert.match(first, /"tinted"/, target);
        await page.evaluate(() => window.moxEditor.selection.select([]));
        await until(page, () => document.querySelectorAll('.cm-line.marked').length === 0);
        await page.locator('.cm-line', { hasText: first.trim() }).first().click();
        await page.locator('.card.lit').waitFor();
        assert.match(await page.locator('.card.lit').getAttribute('aria-label'), /node tinted$/);
    }
});

test('a box selects, a refused edge shows why, an edge takes a node, a dropped file becomes a texture', async () => {
    const { file, page } = await prepare('tinted_texture');
    await layOut(page);
    await drive.settle(page);
    const boxes = await Promise.all(['paint', 'tint'].map((id) => card(page, id).boundingBox()));
    const [left, top] = [Math.min(...boxes.map((b) => b.x)), Math.min(...boxes.map((b) => b.y))];
    const right = Math.max(...boxes.map((b) => b.x + b.width));
    const bottom = Math.max(...boxes.map((b) => b.y + b.height));
    await drag(page, [left - 8, top - 8], [right + 8, bottom + 8]);
    await until(page, () => window.moxEditor.store.get().selection.size === 2);
    assert.deepEqual(
        await page.evaluate(() =>
            window.moxEditor.selection
                .nodes()
                .map((node) => node.record.id)
                .sort(),
        ),
        ['paint', 'tint'],
    );

    const start = await state(page);
    const [from, to] = [port(page, 'tinted', 'out_value'), port(page, 'paint', 'in_uv')];
    await page.mouse.move(...(await middle(from)));
    await page.mouse.down();
    await page.mouse.move(...(await middle(to)), { steps: 5 });
    const reason = await page.locator('.hint').textContent();
    assert.match(reason, /cycle: paintTexture → Multiply → paintTexture/);
    await page.mouse.up();
    assert.deepEqual((await state(page)).edges, start.edges);

    const ends = [port(page, 'tint', 'read'), port(page, 'tinted', 'in_value2')];
    const [a, b] = await Promise.all(ends.map(middle));
    await page.mouse.click((a[0] + b[0]) / 2, (a[1] + b[1]) / 2);
    await page.keyboard.press('Tab');
    await pick(page, 'maths');
    await hasNode(page, 'maths');
    const { edges } = await state(page);
    assert.equal(edges.length, start.edges.length + 1);
    assert.ok(edges.includes('maths.out_value tinted.in_value2'), `${edges}`);

    const bytes = [...readFileSync(`${examples}textures/paint.png`)];
    await page.evaluate((content) => {
        const dataTransfer = new DataTransfer();
        dataTransfer.items.add(new File([new Uint8Array(content)], 'dropped.png'));
        const place = { clientX: 300, clientY: 600 };
        document
            .querySelector('main')
            .dispatchEvent(
                new DragEvent('drop', { dataTransfer, bubbles: true, cancelable: true, ...place }),
            );
    }, bytes);
    await hasNode(page, 'texture');
    assert.deepEqual([...readFileSync(`${folder}/dropped.png`)], bytes);

    let asks = 0;
    page.on('dialog', (dialog) => {
        ++asks;
        void dialog.accept();
    });
    const closed = page.waitForEvent('close');
    await page.close({ runBeforeUnload: true });
    await closed;
    assert.equal(asks, 1, `${file} has unsaved changes`);
});

pageTest('small images are shown on all nodes or on some', 'rim_light', async ({ page }) => {
    await layOut(page);
    await page.locator('#canvas').focus();
    await page.keyboard.press('a');
    await select(page, 'base', 'surface'); // a surface has no output
    const isShown = async (...ids) => {
        for (const id of ids) await card(page, id).locator('.thumbnail').waitFor();
        assert.equal(await page.locator('.thumbnail').count(), ids.length);
    };
    await page.keyboard.press('Shift+T');
    await isShown('base');
    await page.keyboard.press('t');
    await isShown('base', 'facing', 'rim', 'glow', 'rimGlow');
    await page.getByRole('button', { name: 'Small images' }).click();
    await isShown('facing', 'rim', 'glow', 'rimGlow');
});

const openInput = `<material version="1"><nodes><node id="uv" type="CoreUv" version="0"/>
    <node id="grid" type="CoreAnimatedUv" version="0"/></nodes>
    <edges><edge tail="uv" tailPort="read" head="grid" headPort="in_uv"/></edges></material>`;

pageTest('a problem of a port has a badge at the port', openInput, async ({ page }) => {
    const marked = card(page, 'grid').locator('.port-label', { has: page.locator('.badge') });
    await marked.first().waitFor();
    assert.deepEqual(await marked.allTextContents(), ['frame▲1']);
    const words = await marked.locator('.badge').getAttribute('aria-label');
    assert.match(words, /^Problem: the input has no edge/);
});

pageTest('axe finds nothing serious, in light and dark', 'tinted_texture', async ({ page }) => {
    await layOut(page);
    await page.evaluate(() => {
        window.moxEditor.selection.selectIds(['tint']);
        window.moxEditor.pinned.pin({ node: 'tint', port: 'read' });
    });
    await page.evaluate(readFileSync(axe, 'utf8'));
    const click = (name) => page.getByRole('button', { name }).click();
    const views = [
        async () => {},
        () => page.getByRole('tab', { name: 'Programs' }).click(),
        () => page.getByRole('tab', { name: 'Parameters' }).click(),
        () => click('Find'),
        () => page.keyboard.press('Escape').then(() => click('Add')),
        async () => {
            await page.locator('.palette input').fill('note');
            await change(page, () => page.keyboard.press('Enter'));
        },
        () => page.keyboard.press('Escape').then(() => click('Keys')),
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
});

test('markup in names is shown as text', async () => {
    const markup = '<img src=x onerror=alert(1)>';
    const escaped = markup.replaceAll('<', '&lt;');
    const property = (name) => `<property name="${name}" kind="string" value="${escaped}"/>`;
    const annotation = (kind) =>
        `<annotation id="${kind}" kind="${kind}" text="${escaped}" x="0" y="0" width="300" height="200"/>`;
    const text = `<material version="2"><description name="${escaped}"/><nodes>
        <node id="${escaped}" type="CoreConstant" version="0">${property('Name')}${property('Description')}</node>
        <node id="lost" type="${escaped}" version="0"/>
        <node id="surface" type="Surface" version="0"/></nodes>
        <edges><edge tail="${escaped}" tailPort="read" head="surface" headPort="in_colour"/></edges>
        <annotations>${annotation('frame')}${annotation('note')}</annotations></material>`;
    const { page } = await prepare(text, markup);
    await layOut(page);
    await page.getByRole('button', { name: 'Compare' }).click();
    await page.evaluate((id) => {
        window.moxEditor.selection.selectIds([id]);
        window.moxEditor.pinned.pin({ node: id, port: 'read' });
    }, markup);
    for (const tab of ['problems', 'parameters', 'programs', 'differences'])
        await page.locator(`#tab-${tab}`).click();
    await page.locator('.difference').first().waitFor();
    await page.keyboard.press('Control+f');
    await page.locator('.palette li', { hasText: markup }).first().waitFor();
    assert.ok((await page.title()).includes(markup));
    assert.equal(await page.locator('img').count(), 0);
    assert.deepEqual(page.complaints, []);
    await page.context().close();
});

pageTest('two windows show one document', 'tinted_texture', async ({ address, page: left }) => {
    const right = await open(address);
    await remove(left, 'tint');
    await until(right, () => !window.moxEditor.store.get().document.numbers.has('tint'));
    await right.keyboard.press('Control+z');
    await hasNode(left, 'tint');
    // The server reports problems later; two textures are missing next to the copy.
    for (const page of [left, right])
        await until(page, () => window.moxEditor.store.get().problems.length === 2);
    assert.deepEqual(await state(left), await state(right));
    assert.deepEqual(right.complaints, []);
    await right.context().close();
});

pageTest('the graph shows what differs from the file', 'tinted_texture', async ({ file, page }) => {
    await select(page, 'paint');
    await page.locator('#canvas').focus();
    await page.keyboard.press('d');
    const tab = (name) => page.getByRole('tab', { name });
    await tab('0 differences').waitFor();
    await change(page, () => page.keyboard.press('Control+Shift+ArrowLeft'));
    await tab('1 difference').waitFor();
    assert.equal(await page.locator('.badge.mark').count(), 0, 'a move is no mark');
    await change(page, () => page.keyboard.press('Delete'));
    await select(page, 'tint');
    await change(page, async () => {
        await page.getByLabel('Default Colour, red').fill('0.5');
        await page.keyboard.press('Enter');
    });
    await page.locator('.card.changed[aria-label$="node tint"] .badge.mark').waitFor();
    await page.locator('#inspector .difference', { hasText: '"Default Colour" changed' }).waitFor();
    const { removedNodes, removedEdges } = await page.evaluate(() => window.moxEditor.store.get().comparison);
    assert.deepEqual(
        [removedNodes.map(({ record }) => record.id), removedEdges.map(({ tail }) => tail).sort()],
        [['paint'], ['paint', 'uv']],
    );
    await tab('4 differences').click();
    await page.getByRole('button', { name: 'changed node "tint"' }).waitFor();
    // If the file changes too, the comparison uses its new content.
    writeFileSync(file, readFileSync(file, 'utf8').replace('1 0.9 0.8', '0.5 0.9 0.8'));
    await page
        .getByRole('alert')
        .filter({ hasText: /has changed on disk.*tint/s })
        .waitFor();
    await tab('3 differences').waitFor();
    await page.getByRole('button', { name: 'Replace the file' }).click();
    await tab('0 differences').waitFor();
    await page.getByRole('button', { name: 'Compare' }).click();
    assert.equal(await tab('0 differences').count(), 0);
});

test('a server that dies loses nothing that it confirmed', async () => {
    const { file, server, page } = await prepare('rim_light');
    await remove(page, 'base');
    await until(page, () => window.moxEditor.store.get().unsaved);
    server.kill('SIGSTOP');
    await remove(page, 'rim');
    await page.evaluate(() => {
        window.moxEditor.places.layOut();
        window.moxEditor.changes.undo();
        window.moxEditor.changes.undo();
    });
    server.kill('SIGKILL');
    await page.getByRole('alert').getByText('The connection to mox was lost').waitFor();
    await page.getByText('cannot be downloaded: layout, undo.').waitFor();
    const download = page.waitForEvent('download');
    await page.getByRole('button', { name: 'Download unconfirmed changes (1 step for' }).click();
    const unconfirmed = `${folder}/unconfirmed.json`;
    await (await download).saveAs(unconfirmed);
    await select(page, 'rim');
    await page.keyboard.press('Delete');
    assert.ok(!(await page.evaluate(() => window.moxEditor.store.get().document.numbers.has('base'))));
    await page.context().close();

    const again = await open((await serve(file)).address);
    await again.getByRole('button', { name: 'Restore them' }).click();
    await until(again, () => !window.moxEditor.store.get().document.numbers.has('base'));
    await until(again, () => window.moxEditor.store.get().waiting === null);
    assert.ok(await again.evaluate(() => window.moxEditor.store.get().document.numbers.has('rim')));
    await save(again);
    execFileSync(mox, ['apply', file, unconfirmed]);
    await until(again, () =>
        window.moxEditor.store.get().fileChange?.differences.some((text) => text.includes('"rim"')),
    );
    assert.deepEqual(again.complaints, []);
    await again.context().close();
});

/**
 * How the surface differs from an image file, or, if there is none, from the preview of a sphere: the mean out of
 * 255, and the share of components that are far apart.
 */
const difference = (page, file) =>
    page.evaluate(
        async (data) => {
            const pixelsOf = (from) => {
                const context = new OffscreenCanvas(256, 256).getContext('2d');
                context.drawImage(from, 0, 0);
                return context.getImageData(0, 0, 256, 256).data;
            };
            let wanted;
            if (data) {
                const image = new Image();
                image.src = `data:image/png;base64,${data}`;
                await image.decode();
                wanted = pixelsOf(image);
            } else {
                const message = { do: 'picture', mesh: 'sphere', frame: 0, width: 256, height: 256 };
                const { answer, bytes } = await window.moxEditor.server.connection.request(message);
                if (!bytes) return { failure: JSON.stringify(answer) };
                wanted = bytes;
                window.moxPicture.view.seconds = 0;
                window.moxPicture.renderer.draw(window.moxPicture.view);
            }
            const shown = pixelsOf(document.querySelector('#surface canvas'));
            const apart = [...shown]
                .map((value, i) => Math.abs(value - wanted[i]))
                .filter((_, i) => i % 4 < 3);
            return {
                mean: apart.reduce((sum, value) => sum + value, 0) / apart.length,
                far: apart.filter((value) => value > 8).length / apart.length,
            };
        },
        file && readFileSync(file).toString('base64'),
    );

/** A material that emits a cube map or a volume; flames.png serves as a panorama and as two slices in a row. */
const readsTexture = (read, source, input) => `<material version="1"><nodes>
    <node id="place" type="${source}" version="0"/>
    <node id="texture" type="TextureRead" version="0">
        <property name="Name" kind="string" value="light"/>
        <property name="Read" kind="enum" value="${read}"/></node>
    <node id="surface" type="Surface" version="0"/></nodes>
    <edges><edge tail="place" tailPort="read" head="texture" headPort="${input}"/>
        <edge tail="texture" tailPort="out_colour" head="surface" headPort="in_emission"/></edges>
    <bindings><binding stream="texture" tag="light" default="textures/flames.png"/></bindings></material>`;

test('the surface agrees with the preview', async () => {
    cpSync(`${examples}textures`, `${folder}/textures`, { recursive: true });
    const materials = readdirSync(examples)
        .filter((name) => name.endsWith('.xml'))
        .map((name) => [name.replace('.xml', ''), readFileSync(`${examples}${name}`, 'utf8')]);
    materials.push(['cube', readsTexture('Cube', 'SurfaceWorldNormal', 'in_direction')]);
    materials.push(['volume', readsTexture('Volume', 'SurfaceObjectPosition', 'in_place')]);
    const apart = [];
    for (const [name, text] of materials) {
        const { page } = await prepare(text, name);
        await drive.settle(page);
        const found = await difference(page);
        const most = text.includes('"NoiseFractal"') ? { mean: 3, far: 0.1 } : { mean: 1, far: 0.015 };
        if (!(found.mean <= most.mean && found.far <= most.far)) apart.push({ name, ...found });
        await page.context().close();
    }
    assert.deepEqual(apart, []);
});

/** Drops a file onto the surface. */
async function dropMesh(page, name, bytes) {
    const transfer = await page.evaluateHandle(
        ([fileName, text]) => {
            const dropped = new DataTransfer();
            const content = Uint8Array.from(atob(text), (letter) => letter.charCodeAt(0));
            dropped.items.add(new File([content], fileName));
            return dropped;
        },
        [name, Buffer.from(bytes).toString('base64')],
    );
    await page.dispatchEvent('#surface', 'drop', { dataTransfer: transfer });
}

pageTest(
    'a dropped mesh carries the material as in the preview',
    'tinted_texture',
    async ({ file, page }) => {
        cpSync(`${examples}textures`, `${folder}/textures`, { recursive: true });
        const mesh = new URL('../../tests/preview/square.obj', import.meta.url).pathname;
        await drive.settle(page);
        const shown = page.getByLabel('Mesh', { exact: true });
        await dropMesh(page, 'square.obj', readFileSync(mesh));
        await until(
            page,
            () => window.moxPicture.renderer.mesh.name === 'square.obj' && window.moxPicture.isReady(),
        );
        execFileSync(mox, ['preview', file, '-o', `${folder}/square.png`, '--mesh', mesh, '--size', '256']);
        const { mean } = await difference(page, `${folder}/square.png`);
        assert.ok(mean < 1, `${mean}`);

        const failure = page.locator('#surface .problem.error');
        const reasons = [
            ['bad.obj', 'no mesh', /bad\.obj.*cannot be read/],
            ['bad.ply', 'ply', /expected a file with the extension \.obj, \.gltf or \.glb/],
            ['bad.obj', '', /empty/],
        ];
        for (const [name, text, reason] of reasons) {
            await dropMesh(page, name, text);
            await failure.getByText(reason).waitFor();
        }
        assert.equal(await shown.inputValue(), 'square.obj', 'the mesh stays');
        await page.setInputFiles('[aria-label="Mesh file"]', {
            name: 'bare.obj',
            mimeType: 'text/plain',
            buffer: Buffer.from('v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n'),
        });
        await page.locator('#surface .problem.warning', { hasText: 'has no texture coordinates' }).waitFor();
        assert.equal(await failure.count(), 0);
        await shown.selectOption('sphere');
        await until(page, () => document.querySelectorAll('#surface .problem').length === 0);
    },
);

const lostNodes = Array.from({ length: 1000 }, (_, i) => {
    const property = (name, value) => `<property name="${name}" kind="float" value="${value}"/>`;
    const place = property('PositionX', (i % 40) * 260) + property('PositionY', Math.floor(i / 40) * 140);
    return `<node id="lost${i}" type="StudioNoise" version="3">${property('Grain', i)}${place}</node>`;
});
const lostMaterial = `<material version="1">
    <nodes>${lostNodes.join('')}<node id="surface" type="Surface" version="0"/></nodes>
    <edges><edge tail="lost7" tailPort="out_grain" head="surface" headPort="in_colour"/>
        <edge tail="lost6" tailPort="out_grain" head="lost7" headPort="in_grain"/></edges></material>`;

pageTest(
    'a lost plug-in leaves a thousand nodes with what they had',
    lostMaterial,
    async ({ file, page }) => {
        await page.getByRole('tab', { name: '1000 errors, 1000 warnings' }).click();
        await page.getByRole('button', { name: /^error lost999 .*cannot be properly created/ }).click();
        const lost = card(page, 'lost999');
        await lost.waitFor();
        assert.match(await lost.textContent(), /\?.*lost999, was StudioNoise/s);
        assert.equal(await lost.locator('.badge.error').count(), 1);
        await page.locator('.minimap').waitFor();
        const map = await page.locator('.minimap').boundingBox();
        await page.mouse.click(map.x + 12, map.y + 36);
        await card(page, 'lost0').waitFor();
        await page.locator('#canvas').focus();
        const start = await state(page);
        await select(page, 'lost7');
        await change(page, () => page.keyboard.press('Delete'));
        assert.equal((await state(page)).edges.length, 0);
        await undo(page);
        assert.deepEqual((await state(page)).edges, start.edges);
        await select(page, 'lost7');
        await change(page, () => page.keyboard.press('Control+Shift+ArrowLeft'));
        await save(page);
        const original = `${folder}/original.xml`;
        writeFileSync(original, lostMaterial);
        const { stdout } = spawnSync(mox, ['diff', original, file], { encoding: 'utf8' });
        assert.match(stdout, /^[^\n]*lost7[^\n]*PositionX[^\n]*\n$/);
    },
);
