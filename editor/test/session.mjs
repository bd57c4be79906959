// What the tests in browser/ share: one browser, a server and a page for each material, and actions in a page.

import assert from 'node:assert/strict';
import { copyFileSync, cpSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { after, test } from 'node:test';
import * as drive from './drive.mjs';
import { change, drag, middle, port, until } from './drive.mjs';

export const [mox, dist] = process.argv.slice(2);
export const examples = new URL('../../examples/', import.meta.url).pathname;
const browser = await drive.launch();
const root = mkdtempSync(`${tmpdir()}/mox-editor-`);
const servers = [];

after(async () => {
    await browser.close();
    for (const server of servers) server.kill('SIGKILL');
    rmSync(root, { recursive: true, maxRetries: 20 });
});

export async function serve(file) {
    const served = await drive.serve(mox, file);
    servers.push(served.server);
    return served;
}

/** Opens a page until the end of the test. Errors of the page fail the test. */
export async function open(t, address) {
    const page = await drive.open(browser, address, { dist });
    t.after(async () => {
        await page.context().close();
        assert.deepEqual(page.complaints, []);
    });
    return page;
}

/** Opens a material in a new folder: an example, given by its name, or a document. */
export async function prepare(t, material, { name = 'material', hasTextures = false } = {}) {
    const folder = mkdtempSync(`${root}/`);
    const file = `${folder}/${name}.xml`;
    if (material.startsWith('<')) writeFileSync(file, material);
    else copyFileSync(`${examples}${material}.xml`, file);
    if (hasTextures) cpSync(`${examples}textures`, `${folder}/textures`, { recursive: true });
    const { server, address } = await serve(file);
    return { folder, file, server, address, page: await open(t, address) };
}

/** Runs a test with what `prepare` returns. */
export const pageTest = (title, material, run) =>
    test(title, async (t) => run(await prepare(t, material), t));

/** Also lays out the graph and focuses it before the test. */
export const laidOutTest = (title, material, run) =>
    pageTest(title, material, async (prepared) => {
        await layOut(prepared.page);
        await run(prepared);
    });

export async function layOut(page) {
    await button(page, 'Lay out').last().click();
    await until(page, () => window.moxEditor.store.get().undo !== '');
    await focusGraph(page);
}

export const state = (page) =>
    page.evaluate(() => {
        const { store, places } = window.moxEditor;
        const { document, undo, problems, unsaved } = store.get();
        const nodes = [...document.nodes.values()];
        const edges = [...document.edges.values()].map(({ record }) => record);
        return {
            ids: nodes.map(({ record }) => record.id).sort(),
            places: Object.fromEntries(nodes.map((node) => [node.record.id, places.placeOf(node)])),
            edges: edges.map((e) => `${e.tail}.${e.tailPort} ${e.head}.${e.headPort}`).sort(),
            points: edges.flatMap(({ points = [] }) => points),
            annotations: [...document.annotations.values()].map(({ record }) => record),
            undo,
            problems,
            unsaved,
        };
    });

/** Waits until the document has a node. */
export const hasNode = (page, id) =>
    until(page, (name) => window.moxEditor.store.get().document.numbers.has(name), id);
/** Waits until so many nodes are selected. */
export const selects = (page, count) =>
    until(page, (wanted) => window.moxEditor.store.get().selection.size === wanted, count);
export const select = (page, ...ids) =>
    page.evaluate((wanted) => window.moxEditor.selection.selectIds(wanted), ids);

export const button = (page, name) => page.getByRole('button', { name });
export const tab = (page, name) => page.getByRole('tab', { name });
export const focusGraph = (page) => page.locator('#canvas').focus();

/** Presses a key that changes the document. */
export const changeByKey = (page, key) => change(page, () => page.keyboard.press(key));
export const undo = (page) => changeByKey(page, 'Control+z');

export async function copy(page) {
    await page.keyboard.press('Control+c');
    await until(page, () => window.moxEditor.store.get().message === 'Copied.');
}

/** Types a value into a field, which changes the document. */
export async function enter(page, label, value) {
    await page.getByLabel(label, { exact: true }).fill(value);
    await changeByKey(page, 'Enter');
}

/** Adds the first type of node that the open list shows for some letters. */
export async function pick(page, letters, id) {
    await page.locator('.palette input').fill(letters);
    await page.locator('.palette li').first().click();
    await hasNode(page, id);
}

export async function find(page, letters, key = 'Enter') {
    await page.keyboard.press('Control+f');
    await page.locator('.palette input').fill(letters);
    await page.keyboard.press(key);
}

export const dragBy = (page, from, [x, y]) => drag(page, from, [from[0] + x, from[1] + y]);

/** The point halfway between two ports, where a straight edge between them passes. */
export async function halfway(page, ...ends) {
    const [[x1, y1], [x2, y2]] = await Promise.all(ends.map(([id, name]) => middle(port(page, id, name))));
    return [(x1 + x2) / 2, (y1 + y2) / 2];
}
