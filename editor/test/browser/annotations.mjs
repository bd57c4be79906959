// Draws, moves, copies and edits frames and notes, and bends edges.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { card, change, save, until } from '../drive.mjs';
import { button, changeByKey, copy, dragBy, enter, find, focusGraph, halfway, mox } from '../session.mjs';
import { pageTest, select, state, undo } from '../session.mjs';

/** Adds annotations or points to an example, saves it, undoes everything, and expects the first file again. */
const annotationTest = (title, run) =>
    pageTest(title, 'rim_light', async ({ file, page }) => {
        execFileSync(mox, ['format', '--tidy', file]); // gives all nodes positions
        const original = readFileSync(file, 'utf8');
        await button(page, 'Load the file').click();
        await until(page, () => window.moxEditor.store.get().fileChange === null);
        await focusGraph(page);

        await run(page);

        await focusGraph(page);
        await save(page);
        assert.match(readFileSync(file, 'utf8'), /<material version="2">/);
        execFileSync(mox, ['format', '--check', file]);
        while ((await state(page)).undo !== '') await undo(page);
        await save(page);
        assert.equal(readFileSync(file, 'utf8'), original, 'without the new parts it is as before');
    });

const annotation = async (page, kind) => (await state(page)).annotations.find((each) => each.kind === kind);

const holds = ({ x, y, width, height }, at) =>
    x <= at.x && at.x <= x + width && y <= at.y && at.y <= y + height;

/** Converts a point of the graph to the screen, relative to a node. */
const onScreen = (page, point) =>
    card(page, 'base').evaluate((element, { x, y }) => {
        const { document } = window.moxEditor.store.get();
        const place = window.moxEditor.places.placeOf(document.nodes.get(document.numbers.get('base')));
        const box = element.getBoundingClientRect();
        const zoom = box.width / element.offsetWidth;
        return [box.x + (x - place.x) * zoom, box.y + (y - place.y) * zoom];
    }, point);

// The key that adds an annotation, the label of the field for its text, and the key that ends the text.
const keys = { frame: ['g', 'title', 'Enter'], note: ['n', 'text', 'Control+Enter'] };

async function add(page, kind, text) {
    const [key, label, lastKey] = keys[kind];
    await changeByKey(page, key);
    await until(page, (wanted) => document.activeElement?.getAttribute('aria-label') === wanted, label);
    await page.keyboard.type(text);
    await changeByKey(page, lastKey);
    await focusGraph(page);
}

async function addFrame(page) {
    await select(page, 'facing', 'rim');
    await add(page, 'frame', 'Rim');
}

annotationTest('a frame is moved with the nodes in it, and resized at its corner', async (page) => {
    await addFrame(page);
    const before = await state(page);
    const [frame] = before.annotations;
    assert.equal(frame.text, 'Rim');
    const title = await onScreen(page, { x: frame.x + frame.width / 2, y: frame.y + 8 });
    await change(page, () => dragBy(page, title, [-30, 40]));
    const after = await state(page);
    assert.ok(Object.values(before.places).some(({ x }) => x > frame.x + frame.width));
    const way = { x: after.annotations[0].x - frame.x, y: after.annotations[0].y - frame.y };
    assert.ok(way.x < 0 && way.y > 0);
    for (const [id, { x, y }] of Object.entries(before.places)) {
        const { x: wayX, y: wayY } = holds(frame, { x, y }) ? way : { x: 0, y: 0 };
        assert.deepEqual(after.places[id], { x: x + wayX, y: y + wayY }, id);
    }
    await undo(page);
    assert.deepEqual(await state(page), before);

    const corner = { x: frame.x + frame.width, y: frame.y + frame.height };
    const [right, bottom] = await onScreen(page, corner);
    await change(page, () => dragBy(page, [right - 2, bottom - 2], [40, 20]));
    const [resized] = (await state(page)).annotations;
    assert.ok(resized.width > frame.width && resized.height > frame.height && resized.x === frame.x);
    await page.getByLabel(/Graph of .* frame “Rim” is selected/).waitFor();
});

annotationTest('a frame is copied with its contents, but deleted without them', async (page) => {
    await addFrame(page);
    const { ids, places, annotations } = await state(page);
    await copy(page);
    await changeByKey(page, 'Control+v');
    const heldCount = Object.values(places).filter((place) => holds(annotations[0], place)).length;
    assert.equal((await state(page)).ids.length, ids.length + heldCount);
    assert.equal((await state(page)).annotations.length, 2);
    await undo(page);
    await page.evaluate(() => window.moxEditor.selection.selectIds([], ['frame']));
    await changeByKey(page, 'Delete');
    assert.equal((await state(page)).ids.length, ids.length);
    await undo(page);
});

annotationTest('a note is found by its text, which the inspector shows', async (page) => {
    await add(page, 'note', 'Shines at the edge.');
    await page.keyboard.press('Escape');
    await find(page, 'shines');
    await until(page, () => document.querySelector('#inspector textarea')?.value === 'Shines at the edge.');
});

annotationTest('a title and a text are edited in place; Esc discards the changes', async (page) => {
    await addFrame(page);
    const { x, y, width, height } = await annotation(page, 'frame');
    await page.mouse.move(...(await onScreen(page, { x: x + width + 20, y: y + height + 20 })));
    await add(page, 'note', 'Shines at the edge.');
    await page.keyboard.press('a');
    for (const [kind, text] of Object.entries({ note: 'Shines.', frame: 'Edge' })) {
        const place = await annotation(page, kind);
        const inside = await onScreen(page, { x: place.x + 12, y: place.y + 12 });
        const field = page.locator('.annotation-text');
        await page.mouse.dblclick(...inside);
        await field.fill('Not this');
        await page.keyboard.press('Escape');
        await page.mouse.dblclick(...inside);
        await field.fill(text);
        await changeByKey(page, keys[kind].at(-1));
        assert.equal((await annotation(page, kind)).text, text);
    }
});

annotationTest('points of an edge are added, moved and deleted', async (page) => {
    await page.keyboard.press('a');
    const points = async () => (await state(page)).points;
    const middle = await halfway(page, ['base', 'read'], ['surface', 'in_colour']);
    await change(page, () => page.mouse.dblclick(...middle));
    const held = await onScreen(page, (await points())[0]);
    await change(page, () => dragBy(page, held, [10, 70]));
    const [dragged] = await points();
    const shown = await onScreen(page, dragged);
    const distance = Math.hypot(shown[0] - held[0] - 10, shown[1] - held[1] - 70);
    assert.ok(distance < 2, `the point is at ${shown}`);
    await changeByKey(page, 'Control+Shift+ArrowDown');
    assert.equal((await points())[0].y, dragged.y + 40);
    await changeByKey(page, 'Delete');
    assert.deepEqual(await points(), []);
    assert.equal((await state(page)).edges.length, 5, 'the edge is still there');

    await select(page, 'base');
    await page.keyboard.press('e');
    await changeByKey(page, 'b');
    await enter(page, 'point 1, y', '-40');
    assert.equal((await points())[0].y, -40);
});
