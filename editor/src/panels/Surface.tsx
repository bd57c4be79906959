import { useCallback, useEffect, useRef, useState } from 'react';
import type { Snapshot } from '../model/store.ts';
import { orbitOf, turn } from '../surface/camera.ts';
import { meshFrom, meshMakers, type Mesh } from '../surface/meshes.ts';
import { Renderer, type View } from '../surface/renderer.ts';
import { useEditor, useSnapshot } from '../useEditor.ts';

const openFile = 'open a file…';

/** Keeps a renderer up to date with the document, and draws at most once per frame. */
class LivePicture {
    readonly renderer: Renderer;
    private last: Partial<Snapshot> = {};
    private request = 0;
    private files = new Map<string, string>();
    private loading = 0;
    readonly view: View = {
        orbit: { longitude: 0, latitude: 0, distance: 1 },
        light: 0,
        seconds: 0,
        background: 'sky',
    };
    failure = '';

    constructor(
        canvas: HTMLCanvasElement,
        private readonly editor: ReturnType<typeof useEditor>,
    ) {
        this.renderer = new Renderer(canvas);
    }

    take(snapshot: Snapshot): void {
        const { programs, parameters } = snapshot;
        if (parameters !== this.last.parameters) this.renderer.setParameters(parameters);
        if (programs && programs !== this.last.programs) {
            try {
                this.renderer.setPrograms(programs);
                this.failure = '';
            } catch (error) {
                this.failure = (error as Error).message;
                this.editor.store.say(this.failure);
            }
        }
        const isOther = programs !== this.last.programs || parameters !== this.last.parameters;
        this.last = { programs, parameters };
        if (!isOther) return;
        void this.loadTextures(snapshot);
        this.drawSoon();
    }

    /** Requests textures that are new or whose file has changed. */
    private async loadTextures({ parameters }: Snapshot): Promise<void> {
        for (const [tag, sampler] of this.renderer.textureTypes()) {
            const parameter = parameters.find((p) => p.tag === tag && p.stream === 'texture');
            const source = sampler + JSON.stringify(parameter?.values ?? {});
            if (this.files.get(tag) === source) continue;
            this.files.set(tag, source);
            ++this.loading;
            const image = await this.editor.assets.texture(tag, sampler);
            --this.loading;
            if (!image) this.files.delete(tag);
            else this.renderer.setTexture(tag, sampler, image);
            this.drawSoon();
        }
    }

    setMesh(mesh: Mesh): void {
        this.renderer.setMesh(mesh);
        this.view.orbit = orbitOf(mesh);
        this.drawSoon();
    }

    drawSoon(): void {
        cancelAnimationFrame(this.request);
        this.request = requestAnimationFrame(() => {
            this.request = 0;
            this.renderer.draw(this.view);
        });
    }

    /** Whether the image is up to date; for scripts that read it. */
    isReady(): boolean {
        return this.loading === 0 && this.request === 0;
    }
}

/**
 * The live preview, with controls for the mesh, the light and the background. Drawing starts when the graph is on the
 * screen, because without a graphics card it takes processor time.
 * @param side side of the image, in pixels
 */
export function Surface({ isGraphShown, side }: { isGraphShown: boolean; side: number }) {
    const editor = useEditor();
    const isStale = useSnapshot((all) => all.isPictureStale);
    const canvas = useRef<HTMLCanvasElement>(null);
    const live = useRef<LivePicture | null>(null);
    const ownMeshName = useSnapshot((all) => all.ownMesh);
    const chooser = useRef<HTMLInputElement>(null);
    const [meshName, setMeshName] = useState('sphere');
    const [own, setOwn] = useState<Mesh | null>(null);
    const [meshFailure, setMeshFailure] = useState('');
    const [light, setLight] = useState(0);
    const [isPlain, setPlain] = useState(false);
    const [isPlaying, setPlaying] = useState(false);
    const [isOpen, setOpen] = useState(true);
    const [failure, setFailure] = useState('');
    const [missing, setMissing] = useState<readonly string[]>([]);

    const makeMesh = () => (meshName === own?.name ? own : meshMakers[meshName]!());
    const background: View['background'] = isPlain ? 'grey' : 'sky';
    const latest = useRef({ makeMesh, light, background });
    latest.current = { makeMesh, light, background };

    useEffect(() => {
        if (!isOpen || !isGraphShown) return undefined;
        const element = canvas.current!;
        const start = () => {
            try {
                live.current = new LivePicture(element, editor);
            } catch (error) {
                setFailure((error as Error).message);
                return;
            }
            live.current.setMesh(latest.current.makeMesh());
            live.current.view.light = latest.current.light;
            live.current.view.background = latest.current.background;
            live.current.take(editor.store.get());
        };
        start();
        Object.assign(window, { moxPicture: live.current }); // for tests and benchmarks
        const stop = editor.store.subscribe(() => {
            live.current?.take(editor.store.get());
            setFailure(live.current?.failure ?? '');
            setMissing(live.current?.renderer.missing ?? []);
        });
        const lost = (event: Event) => event.preventDefault();
        element.addEventListener('webglcontextlost', lost);
        element.addEventListener('webglcontextrestored', start);
        return () => {
            stop();
            element.removeEventListener('webglcontextlost', lost);
            element.removeEventListener('webglcontextrestored', start);
            live.current = null;
        };
    }, [editor, isGraphShown, isOpen]);

    useEffect(() => {
        live.current?.setMesh(latest.current.makeMesh());
        setMissing(live.current?.renderer.missing ?? []);
        editor.pinned.pinOn(meshName in meshMakers ? meshName : 'sphere');
    }, [editor, meshName, own]);

    const show = useCallback(
        async (name?: string, file?: Blob) => {
            const bytes = file && new Uint8Array(await file.arrayBuffer());
            const { answer, bytes: data } = await editor.assets.mesh(name, bytes);
            setMeshFailure(answer.error ? `${name}: ${answer.error.message}` : '');
            if (!answer.mesh || !data) return;
            const read = meshFrom(answer.mesh, data);
            setOwn(read);
            setMeshName(read.name);
        },
        [editor],
    );

    useEffect(() => {
        if (ownMeshName !== '') void show();
    }, [ownMeshName, show]);

    const chooseMesh = (choice: string) => {
        if (choice === openFile) chooser.current?.click();
        else setMeshName(choice);
    };

    useEffect(() => {
        if (!live.current) return;
        Object.assign(live.current.view, { light, background });
        live.current.drawSoon();
    }, [background, light, side]); // resizing clears the canvas

    useEffect(() => {
        if (!isPlaying) return undefined;
        let request = 0;
        let last = performance.now();
        const frame = (now: number) => {
            if (live.current) {
                live.current.view.seconds += (now - last) / 1000;
                live.current.drawSoon();
            }
            last = now;
            request = requestAnimationFrame(frame);
        };
        request = requestAnimationFrame(frame);
        return () => cancelAnimationFrame(request);
    }, [isPlaying]);

    const orbit = useCallback((x: number, y: number, zoom: number) => {
        const picture = live.current;
        if (!picture) return;
        const turned = turn(picture.view.orbit, x, y);
        const distance = Math.min(8, Math.max(0.3, turned.distance * zoom));
        picture.view.orbit = { ...turned, distance };
        picture.drawSoon();
    }, []);

    const press = (event: React.KeyboardEvent) => {
        const moves: Record<string, [number, number, number]> = {
            ArrowLeft: [-0.1, 0, 1],
            ArrowRight: [0.1, 0, 1],
            ArrowUp: [0, 0.1, 1],
            ArrowDown: [0, -0.1, 1],
            '+': [0, 0, 0.9],
            '-': [0, 0, 1.1],
        };
        const move = moves[event.key];
        if (!move) return;
        event.preventDefault();
        event.stopPropagation();
        orbit(...move);
    };

    return (
        <section
            className="panel"
            id="surface"
            aria-label="Surface"
            onDragOver={(event) => event.preventDefault()}
            onDrop={(event) => {
                event.preventDefault();
                event.stopPropagation(); // otherwise the file would be added to the graph as a texture
                const file = event.dataTransfer.files[0];
                if (file) void show(file.name, file);
            }}
        >
            <h2>
                <button
                    className="fold"
                    aria-expanded={isOpen}
                    aria-label={isOpen ? 'Hide the surface' : 'Show the surface'}
                    onClick={() => setOpen(!isOpen)}
                >
                    {isOpen ? '▾' : '▸'}
                </button>
                Surface{isStale ? ' (last version without errors)' : ''}
            </h2>
            {isOpen && (
                <>
                    <canvas
                        ref={canvas}
                        width={side}
                        height={side}
                        className={isStale ? 'stale' : ''}
                        tabIndex={0}
                        role="img"
                        aria-label={`The material on the mesh ${meshName}. Drag or use the arrow keys to turn it. Press + or - to zoom.`}
                        onPointerDown={(event) => event.currentTarget.setPointerCapture(event.pointerId)}
                        onPointerMove={(event) => {
                            if (event.buttons !== 0) orbit(-event.movementX / 100, event.movementY / 100, 1);
                        }}
                        onWheel={(event) => orbit(0, 0, Math.exp(event.deltaY * 0.001))}
                        onKeyDown={press}
                    />
                    {[failure, meshFailure].map(
                        (text, i) =>
                            text !== '' && (
                                <p key={i} className="problem error">
                                    {text}
                                </p>
                            ),
                    )}
                    {missing.map((text) => (
                        <p key={text} className="problem warning">
                            {text}
                        </p>
                    ))}
                    <div className="bar">
                        <select
                            aria-label="Mesh"
                            title="The mesh that shows the material. You can also drop a mesh file here."
                            value={meshName}
                            onChange={(event) => chooseMesh(event.target.value)}
                        >
                            {[...Object.keys(meshMakers), ...(own ? [own.name] : []), openFile].map(
                                (name) => (
                                    <option key={name}>{name}</option>
                                ),
                            )}
                        </select>
                        <input
                            ref={chooser}
                            type="file"
                            hidden
                            accept=".obj,.gltf,.glb"
                            aria-label="Mesh file"
                            onChange={(event) => {
                                const file = event.target.files?.[0];
                                if (file) void show(file.name, file);
                                event.target.value = ''; // so that the same file can be chosen again
                            }}
                        />
                        <label>
                            light{' '}
                            <input
                                type="range"
                                aria-label="Direction of the light"
                                min={-3.14}
                                max={3.14}
                                step={0.01}
                                value={light}
                                onChange={(event) => setLight(Number(event.target.value))}
                            />
                        </label>
                        <button
                            aria-pressed={isPlaying}
                            title={isPlaying ? 'Stop the animation' : 'Play the animation'}
                            aria-label="Time"
                            onClick={() => setPlaying(!isPlaying)}
                        >
                            {isPlaying ? '❚❚' : '▶'}
                        </button>
                        <button
                            title="Go back to time 0"
                            aria-label="Go back to time 0"
                            onClick={() => {
                                setPlaying(false);
                                if (!live.current) return;
                                live.current.view.seconds = 0;
                                live.current.drawSoon();
                            }}
                        >
                            ❙◀
                        </button>
                        <button
                            aria-pressed={isPlain}
                            title="Show a plain grey background instead of the sky"
                            aria-label="Plain background"
                            onClick={() => setPlain(!isPlain)}
                        >
                            ◐
                        </button>
                    </div>
                </>
            )}
        </section>
    );
}
