// Takes the screenshots in docs/editor.md while building its first material in the page, step by step.
// Usage: node pictures.mjs MOX [DIST]. MOX is the program, and DIST is the folder of a page to use instead of the page in it.

import { copyFileSync, cpSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { card, change, drag, drop, launch, middle, open, port, serve, settle } from './test/drive.mjs';

const [mox, dist] = process.argv.slice(2);
const root = new URL('..', import.meta.url).pathname;
const folder = mkdtempSync(`${tmpdir()}/mox-editor-pictures-`);
const servers = [];
const browser = await launch();

async function shoot(page, name, clip) {
    await page.waitForTimeout(300); // until a frame after the last change
    await page.screenshot({ path: `${root}docs/pictures/editor-${name}.png`, ...(clip ? { clip } : {}) });
}

const hasNodes = (page, count) =>
    page.waitForFunction((wanted) => window.moxEditor.store.get().document.nodes.size === wanted, count);

/** Lays out the graph and shows all of it. */
async function layOut(page) {
    const button = page.locator('header').getByRole('button', { name: 'Lay out' });
    await change(page, () => button.click());
    await page.getByRole('button', { name: 'Frame' }).click();
    await settle(page);
}

/** Drags from a port of a node to a point, and adds the first entry that the list shows for some letters. */
async function addAt(page, id, name, to, letters) {
    await drag(page, await middle(port(page, id, name)), to);
    await page.locator('.palette input').fill(letters);
}

async function pick(page, count) {
    await page.keyboard.press('Enter');
    await hasNodes(page, count);
}

async function firstMaterial() {
    const { server, address } = await serve(mox, `${folder}/first.xml`);
    servers.push(server);
    const page = await open(browser, address, { dist, viewport: { width: 1120, height: 640 } });
    await page.mouse.dblclick(610, 220);
    await page.locator('.palette input').fill('surf');
    await shoot(page, 'add', { x: 0, y: 0, width: 1120, height: 420 });
    await pick(page, 1);

    await addAt(page, 'surface', 'in_colour', [460, 250], 'const');
    await pick(page, 2);
    await page.getByLabel('Default Colour, colour').fill('#d08a3c');
    await settle(page);
    await shoot(page, 'colour');

    const image = readFileSync(`${root}examples/textures/paint.png`);
    await drop(page, 'main', 'paint.png', image, { clientX: 220, clientY: 330 });
    await hasNodes(page, 3);
    await addAt(page, 'texture', 'in_uv', [150, 520], 'uv set');
    await pick(page, 4);
    await settle(page);

    await page.evaluate(() => {
        const editor = window.moxEditor;
        editor.selection.selectEdge([...editor.store.get().document.edges.values()][0].number);
    });
    await page.mouse.move(420, 380);
    await page.locator('#canvas').focus();
    await page.keyboard.press('Tab');
    await page.locator('.palette input').fill('maths');
    await pick(page, 5);
    const from = await middle(port(page, 'texture', 'out_colour'));
    await drag(page, from, await middle(port(page, 'maths', 'in_value2')));
    await page.getByLabel('Function', { exact: true }).selectOption('Multiply');
    await settle(page);
    await layOut(page);
    await shoot(page, 'both');
    await page.context().close();
}

/** The screenshot at the top of the README. */
async function overview() {
    cpSync(`${root}examples/textures`, `${folder}/textures`, { recursive: true });
    const file = `${folder}/layers_by_vertex_colour.xml`;
    copyFileSync(`${root}examples/layers_by_vertex_colour.xml`, file);
    const { server, address } = await serve(mox, file);
    servers.push(server);
    const look = { viewport: { width: 1280, height: 800 }, colorScheme: 'dark' };
    const page = await open(browser, address, { dist, ...look });
    await page.getByRole('tab', { name: 'Programs' }).click();
    await page.getByRole('button', { name: 'Images' }).click();
    await layOut(page);
    await page.locator('.thumbnail').nth(5).waitFor();
    await card(page, 'mossOnRock').locator('.card-header').click();
    await page.locator('.cm-line.marked').first().waitFor();
    await settle(page);
    await shoot(page, 'overview');
}

try {
    await firstMaterial();
    await overview();
} finally {
    await browser.close();
    for (const server of servers) server.kill();
    rmSync(folder, { recursive: true });
}
