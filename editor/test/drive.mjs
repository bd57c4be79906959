// Starts `mox edit` and Debian's Chromium for the scripts that control the page: tests, benchmarks, screenshots.

import { spawn } from 'node:child_process';
import { chromium } from 'playwright-core';

export function launch() {
    return chromium.launch({
        executablePath: '/usr/bin/chromium',
        args: ['--no-sandbox', '--disable-gpu', '--enable-unsafe-swiftshader'],
    });
}

/** Starts the editor for a file. Returns the process and the address that it prints. */
export async function serve(mox, file) {
    const server = spawn(mox, ['edit', '--no-browser', file], { stdio: ['ignore', 'pipe', 'inherit'] });
    const address = await new Promise((resolve, reject) => {
        let text = '';
        server.stdout.on('data', (data) => {
            text += data;
            const found = /http:\S+(?=\n)/.exec(text);
            if (found) resolve(found[0]);
        });
        server.on('exit', (code) => reject(new Error(`mox edit has ended with ${code}`)));
    });
    return { server, address };
}

/**
 * Opens a page and waits until it has loaded the document. `complaints` lists its errors.
 * @param dist folder of a page to use instead of the page in the program
 */
export async function open(browser, address, { dist, ...options } = {}) {
    const context = await browser.newContext({ viewport: { width: 1400, height: 800 }, ...options });
    await context.grantPermissions(['clipboard-read', 'clipboard-write']);
    const page = await context.newPage();
    page.setDefaultTimeout(60000);
    page.complaints = [];
    page.on('pageerror', (error) => page.complaints.push(error.message));
    page.on('console', (message) => {
        if (message.type() === 'error') page.complaints.push(message.text());
    });
    if (dist)
        for (const name of ['app.js', 'app.css'])
            await page.route(`**/${name}`, (route) => route.fulfill({ path: `${dist}/${name}` }));
    await page.goto(address);
    await page.waitForFunction(
        () => document.title.includes('.xml') && window.moxEditor.store.get().catalogue.size > 0,
    );
    return page;
}

/** Waits until the image shows the current document. */
export async function settle(page) {
    await page.waitForFunction(
        () => {
            const { programs, isPictureStale } = window.moxEditor.store.get();
            return programs !== null && !isPictureStale && window.moxPicture?.isReady();
        },
        null,
        { timeout: 90000 },
    );
}

export const until = (page, isDone, argument) => page.waitForFunction(isDone, argument);

/** Performs an action that changes the document, and waits for the change. */
export async function change(page, action) {
    const before = await page.evaluate(() => window.moxEditor.store.get().revision);
    await action();
    await until(page, (revision) => window.moxEditor.store.get().revision > revision, before);
}

export async function save(page) {
    await page.keyboard.press('Control+s');
    await until(page, () => !window.moxEditor.store.get().unsaved);
}

export const card = (page, id) => page.locator(`.card[aria-label$="node ${id}"]`);
export const port = (page, id, name) =>
    card(page, id).locator(`.react-flow__handle[data-handleid="${name}"]`);

export async function middle(locator) {
    const { x, y, width, height } = await locator.boundingBox();
    return [x + width / 2, y + height / 2];
}

export async function drag(page, from, to) {
    await page.mouse.move(...from);
    await page.mouse.down();
    await page.mouse.move((from[0] + to[0]) / 2, (from[1] + to[1]) / 2, { steps: 3 });
    await page.mouse.move(...to, { steps: 3 });
    await page.mouse.up();
}

/** Drops a file onto an element. */
export async function drop(page, selector, name, content, place = {}) {
    const dataTransfer = await page.evaluateHandle(
        ([fileName, bytes]) => {
            const transfer = new DataTransfer();
            transfer.items.add(new File([new Uint8Array(bytes)], fileName));
            return transfer;
        },
        [name, [...Buffer.from(content)]],
    );
    await page.dispatchEvent(selector, 'drop', { dataTransfer, ...place });
}
