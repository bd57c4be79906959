// Selects, adds, connects and copies nodes, and reads what the nodes show.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { card, drag, drop, middle, port, save, settle, until } from '../drive.mjs';
import { button, changeByKey, copy, enter, examples, find, focusGraph, halfway } from '../session.mjs';
import { hasNode, laidOutTest, mox, pageTest, pick, select, selects, state, tab, undo } from '../session.mjs';

const selectedIds = (page) =>
    page.evaluate(() => window.moxEditor.selection.nodes().map(({ record }) => record.id));

laidOutTest('several nodes are selected by keyboard', 'tinted_texture', async ({ page }) => {
    const press = (key) => page.keyboard.press(key);
    const walks = [
        [() => find(page, 'paint'), ['paint']],
        [() => press('Alt+Shift+ArrowRight'), ['paint', 'tinted']],
        [() => press('Alt+Shift+ArrowRight'), ['paint', 'tinted', 'surface']],
        [() => press('Alt+Shift+ArrowLeft'), ['paint', 'surface', 'tinted']], // becomes the last one again
        [() => find(page, 'bumps', 'Shift+Enter'), ['paint', 'surface', 'tinted', 'bumps']],
        [() => press('Alt+ArrowLeft'), ['uv']],
    ];
    for (const [walk, expected] of walks) {
        await walk();
        assert.deepEqual(await selectedIds(page), expected);
    }
    await press('Shift+ArrowRight');
    assert.equal((await selectedIds(page)).length, 2);
    await changeByKey(page, 'Control+d');
    assert.equal((await state(page)).ids.length, 8);
});

laidOutTest('a box selects the nodes in it', 'tinted_texture', async ({ page }) => {
    await settle(page);
    const boxes = await Promise.all(['paint', 'tint'].map((id) => card(page, id).boundingBox()));
    const [left, top] = [Math.min(...boxes.map((b) => b.x)), Math.min(...boxes.map((b) => b.y))];
    const right = Math.max(...boxes.map((b) => b.x + b.width));
    const bottom = Math.max(...boxes.map((b) => b.y + b.height));
    await drag(page, [left - 8, top - 8], [right + 8, bottom + 8]);
    await selects(page, 2);
    assert.deepEqual((await selectedIds(page)).sort(), ['paint', 'tint']);
});

laidOutTest('nodes are copied, cut, pasted and edited together', 'tinted_texture', async ({ page }) => {
    const start = await state(page);
    const press = async (key, count) => {
        await focusGraph(page);
        await page.keyboard.press(key);
        await until(page, (wanted) => window.moxEditor.store.get().document.nodes.size === wanted, count);
    };
    await select(page, 'paint', 'bumps');
    await copy(page);
    await press('Control+v', 8);
    await enter(page, 'Help Url', 'https://example.org/'); // the new nodes are selected
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

laidOutTest('a refused edge shows why', 'tinted_texture', async ({ page }) => {
    await settle(page);
    const { edges } = await state(page);
    const [from, to] = [port(page, 'tinted', 'out_value'), port(page, 'paint', 'in_uv')];
    await page.mouse.move(...(await middle(from)));
    await page.mouse.down();
    await page.mouse.move(...(await middle(to)), { steps: 5 });
    assert.match(await page.locator('.hint').textContent(), /cycle: paintTexture → Multiply → paintTexture/);
    await page.mouse.up();
    assert.deepEqual((await state(page)).edges, edges);
});

laidOutTest('a selected edge takes a new node', 'tinted_texture', async ({ page }) => {
    await settle(page);
    const before = await state(page);
    await page.mouse.click(...(await halfway(page, ['tint', 'read'], ['tinted', 'in_value2'])));
    await page.keyboard.press('Tab');
    await pick(page, 'maths', 'maths');
    const { edges } = await state(page);
    assert.equal(edges.length, before.edges.length + 1);
    assert.ok(edges.includes('maths.out_value tinted.in_value2'), `${edges}`);
});

pageTest('a dropped image becomes a texture', 'tinted_texture', async ({ folder, page }) => {
    const image = readFileSync(`${examples}textures/paint.png`);
    await drop(page, 'main', 'dropped.png', image, { clientX: 300, clientY: 600 });
    await hasNode(page, 'texture');
    assert.deepEqual(readFileSync(`${folder}/dropped.png`), image);
});

laidOutTest('small images are shown on all nodes or on some', 'rim_light', async ({ page }) => {
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
    await button(page, 'Small images').click();
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

const property = (name, value) => `<property name="${name}" kind="float" value="${value}"/>`;
const lostNodes = Array.from({ length: 1000 }, (_, i) => {
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
        await tab(page, '1000 errors, 1000 warnings').click();
        await button(page, /^error lost999 .*cannot be properly created/).click();
        const lost = card(page, 'lost999');
        await lost.waitFor();
        assert.match(await lost.textContent(), /\?.*lost999, was StudioNoise/s);
        assert.equal(await lost.locator('.badge.error').count(), 1);
        await page.locator('.minimap').click({ position: { x: 12, y: 36 } });
        await card(page, 'lost0').waitFor();

        await focusGraph(page);
        const { edges } = await state(page);
        await select(page, 'lost7');
        await changeByKey(page, 'Delete');
        assert.equal((await state(page)).edges.length, 0);
        await undo(page);
        assert.deepEqual((await state(page)).edges, edges);
        await select(page, 'lost7');
        await changeByKey(page, 'Control+Shift+ArrowLeft');
        await save(page);
        const original = `${file}.original`;
        writeFileSync(original, lostMaterial);
        const { stdout } = spawnSync(mox, ['diff', original, file], { encoding: 'utf8' });
        assert.match(stdout, /^[^\n]*lost7[^\n]*PositionX[^\n]*\n$/);
    },
);
