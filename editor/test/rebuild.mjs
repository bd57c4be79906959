// Rebuilds a material in the editor with mouse and keyboard, as an artist does, and counts the actions. The material is read
// from a document; nodes are added from the output backwards.
// Usage: node test/rebuild.mjs MOX [DIST] EXAMPLE... DIST is the folder of a page to use instead of that in MOX.
// The script prints the counts.

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import * as drive from './drive.mjs';
import { middle, port, save, until } from './drive.mjs';

/** Uses the mouse and the keyboard, and counts the actions. A word is one action; its letters are counted separately. */
class Hands {
    counts = { clicks: 0, drags: 0, wheels: 0, keys: 0, words: 0, letters: 0 };

    constructor(page) {
        this.page = page;
    }

    async click(locator) {
        ++this.counts.clicks;
        await locator.click();
    }

    /** Clicks a field, unless it already has the focus. */
    async enter(locator) {
        if (await locator.evaluate((element) => element === document.activeElement)) return;
        await this.click(locator);
    }

    /** Opens a list and chooses an entry. */
    async choose(locator, value) {
        this.counts.clicks += 2;
        await locator.selectOption(value);
    }

    async drag(from, to) {
        ++this.counts.drags;
        await drive.drag(this.page, from, to);
    }

    async zoomOut() {
        ++this.counts.wheels;
        const { x, y, width, height } = await this.page.locator('#canvas').boundingBox();
        await this.page.mouse.move(x + 0.75 * width, y + 0.5 * height);
        await this.page.mouse.wheel(0, 200);
        await this.page.waitForTimeout(200);
    }

    async press(...names) {
        for (const name of names) {
            ++this.counts.keys;
            await this.page.keyboard.press(name);
        }
    }

    async type(text) {
        ++this.counts.words;
        this.counts.letters += text.length;
        await this.page.keyboard.type(text);
    }
}

const isPlace = (name) => name === 'PositionX' || name === 'PositionY';

class Artist {
    /** The ids of the new nodes, by their ids in the document to rebuild. */
    ids = new Map();

    constructor(page, wanted) {
        this.page = page;
        this.wanted = wanted;
        this.hands = new Hands(page);
    }

    change(action) {
        return drive.change(this.page, action);
    }

    nodes() {
        return this.page.evaluate(() =>
            [...window.moxEditor.store.get().document.nodes.values()].map(({ record, properties }) => ({
                id: record.id,
                properties,
            })),
        );
    }

    edges() {
        return this.page.evaluate(() =>
            [...window.moxEditor.store.get().document.edges.values()].map(({ record }) => record),
        );
    }

    /** The middle of a port; undefined if it is out of view. */
    async port(id, name) {
        const handle = port(this.page, id, name);
        if ((await handle.count()) === 0 || !(await handle.boundingBox())) return undefined;
        const [x, y] = await middle(handle);
        return x > 5 && y > 40 && y < 1040 ? [x, y] : undefined;
    }

    /** Lays out the graph and shows all of it. */
    async layOut() {
        await this.page.locator('#canvas').evaluate((canvas) => canvas.focus());
        await this.hands.press('Escape');
        await this.change(() => this.hands.press('l')).catch(() => {});
        await this.hands.press('a');
        await this.still();
    }

    boxes() {
        return this.page
            .locator('.card')
            .evaluateAll((cards) => cards.map((card) => card.getBoundingClientRect().toJSON()));
    }

    /** Waits until nothing in the graph moves. */
    async still() {
        for (let last = ''; ;) {
            await this.page.waitForTimeout(120);
            const now = JSON.stringify(await this.boxes());
            if (now === last) return;
            last = now;
        }
    }

    /** Finds space for a new node to the left of a port; undefined if there is none. */
    async freePlace(from) {
        const boxes = await this.boxes();
        const canvas = await this.page.locator('#canvas').boundingBox();
        const zoom = await this.page
            .locator('.card')
            .first()
            .evaluate((first) => first.getBoundingClientRect().width / first.offsetWidth);
        const [width, height] = [230 * zoom, 170 * zoom];
        const margin = 30; // closer to a port, the edge would snap to it
        const isFree = (x, y) =>
            x > canvas.x + 20 && // the node may extend out of view
            y - height / 2 > canvas.y &&
            y + height / 2 < canvas.y + canvas.height - 40 &&
            boxes.every(
                (box) =>
                    box.x - margin > x ||
                    box.x + box.width + margin < x - width ||
                    box.y > y + height / 2 ||
                    box.y + box.height < y - height / 2,
            );
        for (const back of [120, 160, 220, 320, 400])
            for (const step of [0, 1, -1, 2, -2, 3, -3, 4, -4, 5, -5]) {
                const x = from[0] - back * zoom;
                const y = from[1] + (step * height) / 2;
                if (isFree(x, y)) return [x, y];
            }
        return undefined;
    }

    /** Chooses a type from the open list. Returns false if the list does not contain it. */
    async pickType(node) {
        const field = this.page.locator('.palette input');
        await field.waitFor();
        const before = new Set((await this.nodes()).map(({ id }) => id));
        const label = await this.page.locator('.palette li').first().textContent();
        const wantedLabel = this.fullLabel(node);
        if (!label.startsWith(wantedLabel) || label.slice(wantedLabel.length).startsWith(':')) {
            const letters = await this.shortest(wantedLabel);
            if (letters === undefined) return false;
            await this.hands.type(letters);
        }
        await this.change(() => this.hands.press('Enter'));
        const added = (await this.nodes()).filter(({ id }) => !before.has(id));
        assert.equal(added.length, 1);
        this.ids.set(node.id, added[0].id);
        await until(this.page, () => window.moxEditor.store.get().selection.size === 1);
        return true;
    }

    /** The label of a node in the list of nodes, including its setting. */
    fullLabel({ type, properties }) {
        const { label, deciding } = this.wanted.types[type];
        const setting = properties.find(({ name, value }) => deciding[name]?.includes(value));
        return setting ? `${label}: ${setting.value}` : label;
    }

    /** The fewest letters for which a type is at the top of the list; an experienced artist knows them. */
    async shortest(full) {
        const words = full.split(': ').reverse();
        const field = this.page.locator('.palette input');
        const first = this.page.locator('.palette li').first().locator('span');
        const tries = words.flatMap((word) => [2, 3, 4, word.length].map((count) => word.slice(0, count)));
        for (const letters of [...tries, full]) {
            await field.fill(letters.toLowerCase());
            const found = (await first.count()) > 0 ? await first.textContent() : '';
            if (found === full) {
                await field.fill('');
                return letters.toLowerCase();
            }
        }
        return undefined;
    }

    async addBehind(edge, node) {
        let from, to;
        const look = async () => {
            from = await this.port(this.ids.get(edge.head), edge.headPort);
            to = from && (await this.freePlace(from));
        };
        await look();
        if (!to) await this.layOut().then(look);
        if (!to) await this.hands.zoomOut().then(look);
        assert.ok(to, 'there is room for a node');
        await this.hands.drag(from, to);
        if (await this.pickType(node)) return;
        await this.hands.press('Escape'); // no type with this label fits the port yet
        await this.addFree(node, to);
    }

    async addFree(node, to) {
        ++this.hands.counts.clicks;
        await this.page.mouse.dblclick(...to);
        assert.ok(await this.pickType(node));
    }

    async connect(edge) {
        let tail, head;
        const look = async () => {
            tail = await this.port(this.ids.get(edge.tail), edge.tailPort);
            head = await this.port(this.ids.get(edge.head), edge.headPort);
        };
        await look();
        if (!tail || !head) await this.layOut().then(look);
        await this.change(() => this.hands.drag(tail, head));
    }

    async hasEdge({ tail, tailPort, head, headPort }) {
        const wanted = [this.ids.get(tail), tailPort, this.ids.get(head), headPort].join();
        const edges = await this.edges();
        return edges.some((e) => [e.tail, e.tailPort, e.head, e.headPort].join() === wanted);
    }

    /** Sets the properties that differ from the document in the inspector, which shows the new node. */
    async setProperties(node) {
        let left = node.properties.filter(({ name }) => !isPlace(name));
        while (left.length > 0) {
            const { properties } = (await this.nodes()).find(({ id }) => id === this.ids.get(node.id));
            const shown = (wanted) => properties.find(({ name }) => name === wanted.name);
            left = left.filter((wanted) => shown(wanted)?.value !== wanted.value);
            const next = left.find((wanted) => shown(wanted));
            if (!next) break;
            await this.setProperty(next);
            left = left.filter((wanted) => wanted !== next);
        }
        return left;
    }

    async setProperty({ name, kind, value }) {
        const field = (label) => this.page.locator('#inspector').getByLabel(label, { exact: true });
        if (kind === 'bool') await this.change(() => this.hands.click(field(name)));
        else if (kind === 'enum') await this.change(() => this.hands.choose(field(name), value));
        else if (kind === 'colour') {
            const parts = value.split(' ');
            await this.hands.enter(field(`${name}, red`));
            for (const [i, part] of parts.entries()) {
                const enter = async () => {
                    await this.hands.type(part);
                    await this.hands.press(i + 1 < parts.length ? 'Tab' : 'Enter');
                };
                const component = ['red', 'green', 'blue', 'alpha'][i];
                const old = await field(`${name}, ${component}`).inputValue();
                if (Number(old) === Number(part)) await this.hands.press('Tab');
                else await this.change(enter);
            }
        } else {
            await this.enterText(field(name), value, 'Tab');
        }
    }

    async enterText(field, text, key) {
        await this.hands.enter(field);
        await this.change(async () => {
            await this.hands.type(text);
            await this.hands.press(key);
        });
    }

    async build() {
        const { nodes, edges } = this.wanted;
        const byId = new Map(nodes.map((node) => [node.id, node]));
        const sinks = nodes.filter(({ id }) => !edges.some(({ tail }) => tail === id));
        assert.equal(sinks.length, 1);
        const size = await this.page.locator('#canvas').boundingBox();
        await this.addFree(sinks[0], [size.x + size.width * 0.6, size.y + size.height * 0.4]);
        await this.setProperties(sinks[0]);
        const waiting = [sinks[0].id];
        for (const id of waiting) {
            for (const edge of edges.filter(({ head }) => head === id)) {
                if (await this.hasEdge(edge)) continue;
                if (this.ids.has(edge.tail)) {
                    await this.connect(edge);
                    continue;
                }
                const node = byId.get(edge.tail);
                await this.addBehind(edge, node);
                const missing = await this.setProperties(node);
                if (!(await this.hasEdge(edge))) await this.connect(edge);
                assert.deepEqual(await this.setProperties({ ...node, properties: missing }), []);
                waiting.push(edge.tail);
            }
        }
        await this.setMaterial();
        await this.setBindings();
        ++this.hands.counts.keys;
        await save(this.page);
    }

    async setMaterial() {
        const values = Object.entries({ ...this.wanted.description, ...this.wanted.renderState });
        if (values.length === 0) return;
        await this.page.locator('#canvas').evaluate((canvas) => canvas.focus());
        await this.hands.press('Escape', 'Escape');
        for (const [name, value] of values) {
            const field = this.page.locator('#inspector').getByLabel(name, { exact: true });
            const isList = (await field.evaluate((element) => element.tagName)) === 'SELECT';
            await this.setProperty({ name, kind: isList ? 'enum' : 'string', value });
        }
    }

    async setBindings() {
        if (this.wanted.bindings.length === 0) return;
        await this.hands.click(this.page.getByRole('tab', { name: 'Parameters' }));
        for (const { tag, values } of this.wanted.bindings) {
            await this.enterText(this.page.getByLabel(tag, { exact: true }), values.default, 'Enter');
        }
    }
}

/** Describes a document as the page receives it, with the labels of its node types. */
async function describe(browser, mox, example, dist) {
    const copy = `${mkdtempSync(`${tmpdir()}/mox-example-`)}/example.xml`;
    writeFileSync(copy, readFileSync(example));
    const { server, address } = await drive.serve(mox, copy);
    const page = await drive.open(browser, address, { dist });
    const wanted = await page.evaluate(() => {
        const { document, catalogue } = window.moxEditor.store.get();
        const deciding = (type) =>
            type.properties.filter(
                ({ name, kind, visible }) =>
                    kind === 'enum' &&
                    visible &&
                    (name === 'Function' || type.variants.some((v) => v.property === name)),
            );
        const types = [...catalogue.values()].map((type) => [
            type.type,
            {
                label: type.label,
                deciding: Object.fromEntries(deciding(type).map(({ name, choices }) => [name, choices])),
            },
        ]);
        return {
            nodes: [...document.nodes.values()].map(({ record }) => ({ properties: [], ...record })),
            edges: [...document.edges.values()].map(({ record }) => record),
            bindings: document.bindings,
            description: document.description,
            renderState: document.renderState,
            types: Object.fromEntries(types),
        };
    });
    await page.context().close();
    server.kill();
    return wanted;
}

/**
 * Rebuilds an example and compares the result: only ids and positions may differ.
 * @returns the counts
 */
async function rebuild(browser, mox, example, dist) {
    const wanted = await describe(browser, mox, example, dist);
    const folder = mkdtempSync(`${tmpdir()}/mox-rebuild-`);
    const file = `${folder}/built.xml`;
    const { server, address } = await drive.serve(mox, file);
    const page = await drive.open(browser, address, { dist, viewport: { width: 1920, height: 1080 } });
    try {
        const artist = new Artist(page, wanted);
        await artist.build();
        let text = readFileSync(file, 'utf8');
        const old = new Map([...artist.ids].map(([there, here]) => [here, there]));
        text = text.replace(
            /\b(id|tail|head)="([^"]*)"/g,
            (whole, name, id) => `${name}="${old.get(id) ?? id}"`,
        );
        writeFileSync(file, text);
        const { stdout } = spawnSync(mox, ['diff', example, file], { encoding: 'utf8' });
        assert.deepEqual(
            stdout.split('\n').filter((line) => line !== '' && !/"Position[XY]"/.test(line)),
            [],
        );
        assert.deepEqual(page.complaints, []);
        return { nodes: wanted.nodes.length, edges: wanted.edges.length, ...artist.hands.counts };
    } catch (error) {
        await page.screenshot({ path: `${tmpdir()}/mox-rebuild.png` });
        throw error;
    } finally {
        await page.context().close();
        server.kill();
        rmSync(folder, { recursive: true, maxRetries: 20 });
    }
}

const [mox, ...others] = process.argv.slice(2);
const dist = others[0].endsWith('.xml') ? undefined : others.shift();
const browser = await drive.launch();
for (const example of others) console.log(example, await rebuild(browser, mox, example, dist));
await browser.close();
