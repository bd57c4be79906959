import type { RefObject } from 'react';
import type { Editor } from '../editor.ts';
import { visibleBox } from '../model/viewport.ts';
import { Minimap } from './minimap.ts';
import { paint, readColours, type Colours } from './painter.ts';
import { paintRemoved } from './removed.ts';
import type { View } from './view.ts';

/** Draws the graph and its map, at most once per frame. */
export class Drawing {
    minimap: Minimap | null = null; // null until the first drawing
    private request = 0;
    private colours: Colours | null = null;

    constructor(
        private readonly editor: Editor,
        private readonly view: View,
        private readonly canvas: RefObject<HTMLCanvasElement | null>,
        private readonly map: RefObject<HTMLCanvasElement | null>,
    ) {}

    drawSoon = (): void => {
        cancelAnimationFrame(this.request);
        this.request = requestAnimationFrame(() => this.draw());
    };

    /** Draws in the colours of the style sheet after these have changed. */
    recolour = (): void => {
        this.colours = null;
        this.drawSoon();
    };

    private draw(): void {
        const { editor, view } = this;
        const canvas = this.canvas.current;
        if (!canvas) return;
        this.colours ??= readColours(canvas);
        paint(canvas, editor, view.viewport, this.colours, view.isFar());
        const { comparison } = editor.store.get();
        if (comparison) paintRemoved(canvas, editor, comparison, view.viewport, this.colours.removed);
        this.minimap ??= new Minimap(this.map.current!);
        this.minimap.paint(editor, visibleBox(view.viewport, view.size(), 0), this.colours.selected);
    }
}
