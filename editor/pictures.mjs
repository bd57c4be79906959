// Takes the screenshots in docs/editor.md while building its first material in the page, step by step.
// Usage: node pictures.mjs MOX [DIST]. MOX is the program, and DIST is the folder of a page to use instead of the page in it.

import { copyFileSync, cpSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { launch, open, serve, settle } from './test/drive.mjs';

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

const card = (page, id) => page.locator(`.card[aria-label$="node ${id}"]`);

/** Lays out the graph and shows all of it. */
async function layOut(page) {
    const button = page.locator('header').getByRole('button', { name: 'Lay out' });
    const before = await page.evaluate(() => window.moxEditor.store.get().revision);
    await button.click();
    await page.waitForFunction((revision) => window.moxEditor.store.get().revision > revision, before);
    await page.getByRole('button', { name: 'Frame' }).click();
    await settle(page);
}

async function middle(locator) {
    const { x, y, width, height } = await locator.boundingBox();
    return { x: x + width / 2, y: y + height / 2 };
}

async function drag(page, from, to) {
    await page.mouse.move(from.x, from.y);
    await page.mouse.down();
    await page.mouse.move(to.x, to.y, { steps: 4 });
    await page.mouse.up();
}

/** Drags from a port of a node to a point, and adds the first entry that the list shows for some letters. */
async function addAt(page, id, port, to, letters) {
    await drag(page, await middle(card(page, id).locator(`[data-handleid="${port}"]`)), to);
    await page.locator('.palette input').fill(letters);
}

async function pick(page, count) {
    await page.keyboard.press('Enter');
    await hasNodes(page, count);
}

/** Drops a file onto the page, like a file manager. */
async function drop(page, file, to) {
    const bytes = [...readFileSync(file)];
    const name = file.split('/').pop();
    const data = await page.evaluateHandle(
        ([content, fileName]) => {
            const transfer = new DataTransfer();
            transfer.items.add(new File([new Uint8Array(content)], fileName, { type: 'image/png' }));
            return transfer;
        },
        [bytes, name],
    );
    const place = { dataTransfer: data, clientX: to.x, clientY: to.y };
    await page.dispatchEvent('main', 'drop', place);
}

async function firstMaterial() {
    const { server, address } = await serve(mox, `${folder}/first.xml`);
    servers.push(server);
    const page = await open(browser, address, { dist, viewport: { width: 1120, height: 640 } });
    await page.mouse.dblclick(610, 220);
    await page.locator('.palette input').fill('surf');
    await shoot(page, 'add', { x: 0, y: 0, width: 1120, height: 420 });
    await pick(page, 1);

    await addAt(page, 'surface', 'in_colour', { x: 460, y: 250 }, 'const');
    await pick(page, 2);
    await page.getByLabel('Default Colour, colour').fill('#d08a3c');
    await settle(page);
    await shoot(page, 'colour');

    await drop(page, `${root}examples/textures/paint.png`, { x: 220, y: 330 });
    await hasNodes(page, 3);
    await addAt(page, 'texture', 'in_uv', { x: 150, y: 520 }, 'uv set');
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
    const from = await middle(card(page, 'texture').locator('[data-handleid="out_colour"]'));
    await drag(page, from, await middle(card(page, 'maths').locator('[data-handleid="in_value2"]')));
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
    await page.getByRole('button', { name: 'Pictures' }).click();
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
