// Builds a painted brick wall from an empty material: the example tinted_texture.

import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { card, change, drag, middle, port, save, settle } from '../drive.mjs';
import { button, changeByKey, dragBy, examples, hasNode, mox, pageTest } from '../session.mjs';
import { pick, selects, state, tab } from '../session.mjs';

const emptyMaterial = '<?xml version="1.0" encoding="UTF-8"?>\n<material version="1">\n</material>\n';
const colour = { 'Default Colour, red': '1', 'Default Colour, green': '0.9', 'Default Colour, blue': '0.8' };
// The nodes: the initial id, the final id, and the properties to set in the inspector.
const nodes = [
    ['uvSet', 'uv', { Name: 'uv0' }],
    ['texture', 'paint', { Name: 'paintTexture', 'Basic Colour': true, Description: 'The painted colours.' }],
    ['texture2', 'bumps', { Name: 'normalTexture', 'Colour Type': 'Normal' }],
    ['constant', 'tint', { Name: 'tint', ...colour, Description: 'Multiplies the painted colours.' }],
    ['maths', 'tinted', {}],
];
const textures = { paintTexture: 'textures/paint.png', normalTexture: 'textures/normal.png' };

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

/** Drags from a port to the empty graph, and adds a node there. */
async function add(page, [id, name], by, letters, newId) {
    await dragBy(page, await middle(port(page, id, name)), by);
    await pick(page, letters, newId);
}

/** Sets a field of a panel by mouse. */
async function set(page, panel, label, value) {
    const field = page.locator(panel).getByLabel(label, { exact: true });
    await change(page, async () => {
        if (value === true) await field.click();
        else if ((await field.evaluate((element) => element.tagName)) === 'SELECT')
            await field.selectOption(value);
        else {
            await field.fill(value);
            await field.blur();
        }
    });
}

pageTest('a brick wall is built by mouse, undone and redone', emptyMaterial, async ({ file, page }) => {
    await page.mouse.dblclick(700, 300);
    await pick(page, 'surface', 'surface');
    await add(page, ['surface', 'in_colour'], [-140, -60], 'maths', 'maths');
    await add(page, ['maths', 'in_value1'], [-130, -60], 'texture', 'texture');
    await add(page, ['texture', 'in_uv'], [60, 320], 'uv set', 'uvSet');
    await add(page, ['maths', 'in_value2'], [-130, 80], 'constant', 'constant');
    await add(page, ['surface', 'in_normal'], [-240, 220], 'texture', 'texture2');
    const uv = [port(page, 'uvSet', 'read'), port(page, 'texture2', 'in_uv')];
    await change(page, async () => drag(page, await middle(uv[0]), await middle(uv[1])));
    let actions = 7;
    for (const [id, newId, values] of nodes) {
        await card(page, id).locator('.card-header').click();
        for (const [label, value] of Object.entries({ ...values, id: newId })) {
            await set(page, '#inspector', label, value);
            ++actions;
        }
    }
    await tab(page, 'Parameters').click();
    for (const [name, value] of Object.entries(textures)) {
        await set(page, 'body', name, value);
        ++actions;
    }
    await settle(page);
    const built = await state(page);

    // Undo and redo have one step per action.
    let steps = 0;
    for (; (await state(page)).undo !== ''; ++steps) await change(page, () => button(page, 'Undo').click());
    assert.equal(steps, actions);
    assert.deepEqual((await state(page)).ids, []);
    for (; steps > 0; --steps) await changeByKey(page, 'Control+Shift+Z');
    const again = await state(page);
    assert.deepEqual([again.ids, again.edges, again.undo], [built.ids, built.edges, built.undo]);
    await expectBricks(page, file);
});

/** Uses the page by keyboard alone. */
class Keyboard {
    constructor(page) {
        this.page = page;
    }

    async press(...names) {
        for (const name of names) await this.page.keyboard.press(name);
    }

    /** Chooses the first entry that the open list shows for some letters. */
    async choose(letters) {
        await this.page.locator('.palette input').waitFor();
        await this.page.keyboard.type(letters);
        await this.press('Enter');
    }

    async add(letters, id) {
        await this.choose(letters);
        await hasNode(this.page, id);
        await selects(this.page, 1);
    }

    async connect(from, to) {
        await this.press('c');
        await this.choose(from);
        await change(this.page, () => this.choose(to));
    }

    /** Goes to a field with the Tab key, and sets it. */
    async set(label, value) {
        const focused = (name) => this.page.evaluate((key) => document.activeElement[key], name);
        for (let count = 0; (await focused('ariaLabel')) !== label; ++count) {
            assert.ok(count < 80, `the Tab key does not lead to ${label}`);
            await this.press('Tab');
        }
        await change(this.page, async () => {
            if (value === true) return this.press('Space');
            if ((await focused('tagName')) !== 'SELECT') await this.press('Control+a');
            await this.page.keyboard.type(value);
            await this.press('Tab');
        });
    }
}

pageTest('the same is built by keyboard alone', emptyMaterial, async ({ file, page }) => {
    const keyboard = new Keyboard(page);
    const added = { 'uv set': 'uvSet', texture: 'texture', maths: 'maths', surface: 'surface' };
    for (const [letters, id] of Object.entries(added)) {
        await keyboard.press('Tab');
        await keyboard.add(letters, id);
    }
    for (const [letters, id, output, input] of [
        ['constant', 'constant', 'constant', 'in2'],
        ['texture', 'texture2', 'colour', 'normal'],
    ]) {
        await keyboard.press('Escape', 'Space');
        await keyboard.add(letters, id);
        await keyboard.connect(output, input);
    }
    await keyboard.connect('uv', 'uv set');
    for (const [id, newId, values] of nodes) {
        await keyboard.press('Control+f');
        await keyboard.choose(id);
        await keyboard.press('Enter', 'Shift+Tab');
        for (const [label, value] of Object.entries({ id: newId, ...values }))
            await keyboard.set(label, value);
        await keyboard.press('Escape');
    }
    await tab(page, 'Parameters').focus(); // in the graph, Tab adds nodes
    await keyboard.press('Enter');
    for (const [name, value] of Object.entries(textures)) await keyboard.set(name, value);
    await expectBricks(page, file);
});
