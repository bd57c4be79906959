import type { Connection, Reply } from './connection.ts';
import {
    applyChanges,
    changesMeaning,
    documentFrom,
    emptyDocument,
    nodeById,
    positionOf,
} from './document.ts';
import type { DocumentState, Point } from './document.ts';
import * as annotations from './annotations.ts';
import type { Moves } from './annotations.ts';
import { comparisonFrom, noDifferences, type Comparison } from './comparison.ts';
import type { Catalogue } from './connect.ts';
import type { Answer, EdgeRecord, MaterialParts, NodeState, Problem, Step, Waiting } from './messages.ts';
import type { AnnotationRecord, AnnotationState, EdgeState } from './messages.ts';
import { addNode, addTextureNode, connect, removeAndRewire, removeEdge } from './edits.ts';
import { removeNodes, setBinding, textureType } from './edits.ts';
import type { NodeProperty, Placement, TypeChoice } from './edits.ts';
import { parseNumbers } from './numbers.ts';
import { parameterOf, readParameters, withNumbers, type Parameter } from './parameters.ts';
import { around, type Box } from './viewport.ts';
import { shapeOf } from './shape.ts';

export interface Programs {
    vertex: string;
    fragment: string;
    reflection: string;
}

/** The mip levels of a texture, the largest first. */
export interface TextureLevels {
    /** Whether the texels are 16-bit floats instead of bytes. */
    isHalf: boolean;
    levels: { width: number; height: number; layers: number; texels: Uint8Array | Uint16Array }[];
}

export interface AddMenu {
    /** The position of the menu on the screen. */
    at: Point;
    /** The position of the new node in the graph. */
    point: Point;
    placement: Placement;
}

export interface Thumbnail {
    /** The document's meaning when the image was rendered, see Editor.meaning. */
    meaning: number;
    /** Missing if the node cannot be rendered. */
    picture?: ImageData;
}

export interface Pinned {
    node: string;
    port: string;
    picture?: ImageData;
}

/** Everything that the page shows. It is immutable: each change creates a new snapshot. */
export interface Snapshot {
    file: string;
    document: DocumentState;
    catalogue: Catalogue;
    materialParts: MaterialParts;
    /** The languages in which the server can compile. */
    targets: readonly string[];
    revision: number;
    unsaved: boolean;
    undo: string;
    redo: string;
    waiting: Waiting | null;
    /** The unanswered messages if the connection is lost, otherwise null. */
    lost: object[] | null;
    /** How the document differs from the file; null if the differences are not shown. */
    comparison: Comparison | null;
    fileChange: { differences: string[]; error: string } | null;
    selection: ReadonlySet<number>;
    /** The numbers of the selected frames and notes. */
    selectedAnnotations: ReadonlySet<number>;
    selectedEdge: number | null;
    /** The index of the selected point in the selected edge. */
    selectedPoint: number | null;
    /** The positions of items that are being dragged or whose move is not confirmed yet. */
    moves: Moves;
    problems: readonly Problem[];
    /** The programs of the preview. While the material has errors, they are those of an earlier revision. */
    programs: Programs | null;
    isPictureStale: boolean;
    parameters: readonly Parameter[];
    pinned: Pinned | null;
    /** Whether nodes show a small image of their first output. */
    hasThumbnails: boolean;
    /** The numbers of the nodes for which the opposite of hasThumbnails applies. */
    thumbnailExceptions: ReadonlySet<number>;
    /** Small images by node id. */
    thumbnails: ReadonlyMap<string, Thumbnail>;
    addMenu: AddMenu | null;
    /** The name of the mesh that the host provides; empty if there is none. */
    ownMesh: string;
    /** How often this page laid out the whole graph. */
    layouts: number;
    /** The latest message, for the status line and for screen readers. */
    message: string;
}

const empty: Snapshot = {
    file: '',
    document: emptyDocument,
    catalogue: new Map(),
    materialParts: { description: [], renderState: [] },
    targets: [],
    revision: 0,
    unsaved: false,
    undo: '',
    redo: '',
    waiting: null,
    lost: null,
    comparison: null,
    fileChange: null,
    selection: new Set(),
    selectedAnnotations: new Set(),
    selectedEdge: null,
    selectedPoint: null,
    moves: annotations.noMoves,
    problems: [],
    programs: null,
    isPictureStale: false,
    parameters: [],
    pinned: null,
    hasThumbnails: false,
    thumbnailExceptions: new Set(),
    thumbnails: new Map(),
    addMenu: null,
    ownMesh: '',
    layouts: 0,
    message: '',
};

const compileDelay = 15; // in milliseconds, so that consecutive answers cause a single compilation
const verifyDelay = 400; // in milliseconds, after the last value of a parameter

/**
 * The state of the page and all actions on the document. A change is sent to the server, and the page
 * shows it when the server has confirmed it. Only dragged items and values of parameters are shown earlier.
 */
export class Editor {
    private snapshot = empty;
    private readonly listeners = new Set<() => void>();
    private connection!: Connection;
    /** Incremented by each change that can affect programs or images. */
    private meaning = 0;
    /** Values of parameters that are shown but not confirmed yet, by node and property. */
    private readonly sentValues = new Map<string, string>();
    private pendingChanges = 0;
    private wanted: readonly string[] = [];
    private isDrawing = false;
    private comparisonsWanted = 0;
    private comparisonsDone = 0;
    private compileTimer: ReturnType<typeof setTimeout> | undefined;
    private pinnedMesh = 'sphere';
    private areProgramsWanted = false;

    get(): Snapshot {
        return this.snapshot;
    }

    subscribe = (listener: () => void): (() => void) => {
        this.listeners.add(listener);
        return () => this.listeners.delete(listener);
    };

    private set(changes: Partial<Snapshot>): void {
        this.snapshot = { ...this.snapshot, ...changes };
        for (const listener of this.listeners) listener();
    }

    say(message: string): void {
        this.set({ message });
    }

    // The server

    /** Uses a new connection, either the first one or one that replaces a lost connection. */
    async open(connection: Connection): Promise<void> {
        this.connection = connection;
        this.pendingChanges = 0;
        this.isDrawing = false; // requests on a lost connection are never answered
        this.comparisonsDone = this.comparisonsWanted;
        if (this.snapshot.lost) this.set({ lost: null, message: 'The connection has been restored.' });
        const state = this.fetchState();
        const catalogue = await connection.request({ do: 'catalogue' });
        await state;
        if (catalogue.answer.error) this.say(describeError(catalogue.answer));
        const types = catalogue.answer.types ?? [];
        this.set({
            catalogue: new Map(types.map((type) => [type.type, type])),
            ...(catalogue.answer.material ? { materialParts: catalogue.answer.material } : {}),
            targets: catalogue.answer.targets ?? [],
        });
        this.compileSoon(0);
    }

    lose(unanswered: object[]): void {
        this.set({
            lost: [...(this.snapshot.lost ?? []), ...unanswered],
            message: 'The connection to mox was lost.',
        });
    }

    notice(notice: Answer): void {
        this.takeStatus(notice);
        if (notice.event === 'changed') {
            if (this.takeChanges(notice)) this.compileSoon(compileDelay);
        } else if (notice.event === 'replaced') {
            void this.fetchState().then(() => this.compileSoon(0));
        } else if (notice.event === 'file') {
            const differences = notice.differences ?? [];
            const error = notice.error?.message ?? '';
            this.set({ fileChange: notice.changed || error !== '' ? { differences, error } : null });
            void this.compare();
        } else if (notice.event === 'saved') {
            this.set({ fileChange: null, message: 'Another window has saved the material.' });
            void this.compare();
        }
    }

    private async fetchState(): Promise<void> {
        this.takeState((await this.connection.request({ do: 'state' })).answer);
    }

    private takeState(answer: Answer): void {
        this.takeStatus(answer);
        if (!answer.state) return;
        const file = answer.file ?? this.snapshot.file;
        ++this.meaning;
        this.set({
            document: documentFrom(answer.state),
            file,
            ownMesh: answer.ownMesh ?? this.snapshot.ownMesh,
            selection: new Set(),
            selectedAnnotations: new Set(),
            selectedEdge: null,
            selectedPoint: null,
            moves: annotations.noMoves,
            thumbnailExceptions: new Set(),
            fileChange: null,
        });
    }

    private takeStatus(answer: Answer): void {
        if (answer.unsaved === undefined) return;
        const { revision, unsaved, undo = '', redo = '', waiting = null } = answer;
        const isOther = revision !== this.snapshot.revision;
        this.set({ revision, unsaved, undo, redo, waiting });
        if (isOther) void this.compare();
    }

    /** @returns whether programs and images may have changed */
    private takeChanges(answer: Answer): boolean {
        if (!answer.changes) return false;
        const hasMeaning = changesMeaning(this.snapshot.document, answer.changes);
        if (hasMeaning) ++this.meaning;
        const document = applyChanges(this.snapshot.document, answer.changes);
        const selection = new Set([...this.snapshot.selection].filter((n) => document.nodes.has(n)));
        const selectedAnnotations = new Set(
            [...this.snapshot.selectedAnnotations].filter((n) => document.annotations.has(n)),
        );
        const thumbnailExceptions = new Set(
            [...this.snapshot.thumbnailExceptions].filter((n) => document.nodes.has(n)),
        );
        const edge = document.edges.get(this.snapshot.selectedEdge ?? -1);
        const point = this.snapshot.selectedPoint;
        this.set({
            document,
            selection,
            selectedAnnotations,
            thumbnailExceptions,
            selectedEdge: edge?.number ?? null,
            selectedPoint: point !== null && point < (edge?.record.points?.length ?? 0) ? point : null,
        });
        return hasMeaning;
    }

    /** Sends a message that changes the document. */
    private async change(message: object, compileIn = compileDelay): Promise<Answer> {
        ++this.pendingChanges;
        const { answer } = await this.connection.request(message);
        --this.pendingChanges;
        this.takeStatus(answer);
        const hasMeaning = this.takeChanges(answer);
        if (answer.state) this.takeState(answer);
        if (answer.error) this.say(describeError(answer));
        else if (hasMeaning || answer.state) this.compileSoon(compileIn);
        return answer;
    }

    private apply(steps: Step[], gesture?: string, compileIn = compileDelay): Promise<Answer> | undefined {
        if (steps.length === 0) return undefined;
        return this.change({ do: 'apply', steps, ...(gesture ? { gesture } : {}) }, compileIn);
    }

    // Programs and problems

    /** Allows compilation. Called once the page shows the graph, because compilation would delay that. */
    wantPrograms(): void {
        this.areProgramsWanted = true;
        this.compileSoon(0);
    }

    private compileSoon(delay: number): void {
        if (!this.areProgramsWanted) return;
        clearTimeout(this.compileTimer);
        this.compileTimer = setTimeout(() => {
            this.compileTimer = undefined;
            void this.compile();
        }, delay);
    }

    /**
     * Repeats a compilation whose result is out of date. This is necessary because the change that made it
     * so may not start a compilation, for example if it moved a node.
     */
    private compileAgain(): void {
        if (this.compileTimer === undefined) this.compileSoon(compileDelay);
    }

    private async compile(): Promise<void> {
        const { answer } = await this.connection.request({ do: 'compile', targets: ['essl'] });
        // A change that is not confirmed yet also makes the answer out of date, and the page may already show it.
        if (answer.outOfDate || this.pendingChanges > 0) {
            this.compileAgain();
            return;
        }
        const files = answer.programs?.essl;
        if (files) {
            const programs = {
                vertex: files['.vertex.essl'] ?? '',
                fragment: files['.fragment.essl'] ?? '',
                reflection: files['.reflection.json'] ?? '',
            };
            this.sentValues.clear();
            this.set({ isPictureStale: false, parameters: readParameters(answer.bindings ?? '') });
            if (!isSame(programs, this.snapshot.programs)) this.set({ programs });
        } else {
            this.set({ isPictureStale: true });
        }
        const check = await this.connection.request({ do: 'problems' });
        if (check.answer.problems) this.set({ problems: check.answer.problems });
        else if (check.answer.outOfDate) this.compileAgain();
        else if (check.answer.error) this.say(describeError(check.answer));
        void this.drawPinned();
        void this.drawThumbnails();
    }

    /** The programs in a language, and for each line of the Cg programs the node that it comes from. */
    async programsIn(target: string): Promise<Answer> {
        return (await this.connection.request({ do: 'compile', targets: [target] })).answer;
    }

    /** @param sampler the type of the sampler that reads the texture */
    async texture(tag: string, sampler: string): Promise<TextureLevels | undefined> {
        const reply = await this.connection.request({ do: 'texture', tag, sampler });
        const [problem] = reply.answer.problems ?? [];
        if (problem) this.say(problem.message);
        return levelsOf(reply);
    }

    /** Loads a mesh file, or the mesh of the host if no file is given. */
    async mesh(name?: string, bytes?: Uint8Array): Promise<Reply> {
        const reply = await this.connection.request({ do: 'mesh', ...(name ? { name } : {}) }, bytes);
        if (reply.answer.error) this.say(describeError(reply.answer));
        else this.say(`The material is shown on ${reply.answer.mesh?.name}.`);
        return reply;
    }

    pin(pinned: { node: string; port: string } | null): void {
        this.set({ pinned });
        void this.drawPinned();
    }

    /** Sets the mesh for pinned images; it must be one of the shapes of the server. */
    pinOn(mesh: string): void {
        if (mesh === this.pinnedMesh) return;
        this.pinnedMesh = mesh;
        void this.drawPinned();
    }

    private async drawPinned(): Promise<void> {
        const { pinned } = this.snapshot;
        if (!pinned) return;
        const node = `${pinned.node}.${pinned.port}`;
        const mesh = this.pinnedMesh;
        const message = { do: 'picture', node, mesh, width: 192, height: 192 };
        const reply = await this.connection.request(message);
        const picture = toImage(reply);
        if (reply.answer.outOfDate) this.compileAgain();
        if (reply.answer.error) this.say(describeError(reply.answer));
        if (
            picture &&
            mesh === this.pinnedMesh &&
            this.snapshot.pinned?.node === pinned.node &&
            this.snapshot.pinned.port === pinned.port
        )
            this.set({ pinned: { ...pinned, picture } });
    }

    /** Shows or hides the small images of all nodes. */
    toggleThumbnails(): void {
        const hasThumbnails = !this.snapshot.hasThumbnails;
        this.set({ hasThumbnails, thumbnailExceptions: new Set(), thumbnails: new Map() });
        void this.drawThumbnails();
    }

    /** Shows the small images of some nodes, or hides them if all of these nodes show theirs. */
    toggleThumbnailsOf(nodes: readonly NodeState[]): void {
        const { hasThumbnails, thumbnailExceptions } = this.snapshot;
        const isShown = !nodes.every((node) => this.showsThumbnail(node));
        const exceptions = new Set(thumbnailExceptions);
        for (const { number } of nodes)
            if (isShown === hasThumbnails) exceptions.delete(number);
            else exceptions.add(number);
        this.set({ thumbnailExceptions: exceptions });
        void this.drawThumbnails();
    }

    showsThumbnail(node: NodeState): boolean {
        const { hasThumbnails, thumbnailExceptions } = this.snapshot;
        return hasThumbnails !== thumbnailExceptions.has(node.number);
    }

    /** Sets the nodes in view; small images are rendered only for these. */
    want(ids: readonly string[]): void {
        this.wanted = ids;
        void this.drawThumbnails();
    }

    /** Renders the images that are missing or out of date, one after another. */
    private async drawThumbnails(): Promise<void> {
        if (this.isDrawing) return;
        this.isDrawing = true;
        for (let id = this.nextThumbnail(); id !== undefined; id = this.nextThumbnail()) {
            const { meaning } = this;
            const message = { do: 'picture', node: id, mesh: 'plane', width: 64, height: 64 };
            const reply = await this.connection.request(message);
            if (reply.answer.outOfDate) this.compileAgain();
            if (reply.answer.outOfDate || this.snapshot.lost) break;
            const isGood = !reply.answer.problems?.some((problem) => problem.severity === 'error');
            const picture = isGood ? toImage(reply) : undefined;
            const thumbnails = new Map(this.snapshot.thumbnails);
            thumbnails.set(id, { meaning, ...(picture ? { picture } : {}) });
            this.set({ thumbnails });
        }
        this.isDrawing = false;
    }

    private nextThumbnail(): string | undefined {
        const { thumbnails, document } = this.snapshot;
        return this.wanted.find((id) => {
            const node = nodeById(document, id);
            if (!node?.outputs?.length || !this.showsThumbnail(node)) return false;
            return thumbnails.get(id)?.meaning !== this.meaning;
        });
    }

    // Selection

    /** Selects nodes and annotations, and deselects everything else. */
    select(nodes: Iterable<number>, chosen: Iterable<number> = []): void {
        this.set({
            selection: new Set(nodes),
            selectedAnnotations: new Set(chosen),
            selectedEdge: null,
            selectedPoint: null,
        });
    }

    selectEdge(edge: number | null, point: number | null = null): void {
        this.select([]);
        this.set({ selectedEdge: edge, selectedPoint: point });
    }

    /** @param isAdding whether to extend the selection, at its end */
    selectIds(ids: readonly string[], chosen: readonly string[] = [], isAdding = false): void {
        const { document, selection, selectedAnnotations } = this.snapshot;
        const nodes = ids.flatMap((id) => document.numbers.get(id) ?? []);
        const wanted = [...document.annotations.values()]
            .filter(({ record }) => chosen.includes(record.id))
            .map(({ number }) => number);
        if (isAdding) this.select(moveToEnd(selection, nodes), moveToEnd(selectedAnnotations, wanted));
        else this.select(nodes, wanted);
    }

    /** Selects the first edge of the selected nodes, or the edge that follows the selected edge in the document. */
    selectNextEdge(): void {
        const { document, selectedEdge } = this.snapshot;
        const ids = this.selectedNodes().map(({ record }) => record.id);
        const all = [...document.edges.values()];
        const isHere = ({ record }: EdgeState) => ids.includes(record.tail) || ids.includes(record.head);
        const at = all.findIndex(({ number }) => number === selectedEdge);
        const next = ids.length > 0 ? all.find(isHere) : all[(at + 1) % all.length];
        if (!next) {
            this.say('There is no edge here.');
            return;
        }
        this.selectEdge(next.number);
        const { tail, tailPort, head, headPort } = next.record;
        this.say(`Edge from ${tail}, ${tailPort} to ${head}, ${headPort}`);
    }

    selectedAnnotations(): AnnotationState[] {
        const { document, selectedAnnotations } = this.snapshot;
        return [...selectedAnnotations].flatMap((number) => document.annotations.get(number) ?? []);
    }

    /** The selection and the contents of the selected frames. */
    private held(): annotations.Items {
        const { document, selection, selectedAnnotations } = this.snapshot;
        return annotations.withContents(document, selection, selectedAnnotations);
    }

    selectedNodes(): NodeState[] {
        const { document, selection } = this.snapshot;
        return [...selection].flatMap((number) => document.nodes.get(number) ?? []);
    }

    // Changes

    undo(): void {
        const title = this.snapshot.undo;
        void this.change({ do: 'undo' }).then((answer) => {
            if (!answer.error) this.say(title ? `Undone: ${title}` : 'There is nothing to undo.');
        });
    }

    redo(): void {
        const title = this.snapshot.redo;
        void this.change({ do: 'redo' }).then((answer) => {
            if (!answer.error) this.say(title ? `Redone: ${title}` : 'There is nothing to redo.');
        });
    }

    drag(moves: Moves): void {
        this.set({ moves });
    }

    /** The position of a node, including a drag in progress. */
    placeOf = (node: NodeState): Point => this.snapshot.moves.nodes.get(node.number) ?? positionOf(node);

    /** The area of an annotation, including a drag in progress. */
    areaOf(annotation: AnnotationState): Box {
        return this.snapshot.moves.areas.get(annotation.number) ?? annotations.areaOf(annotation);
    }

    pointsOf(edge: EdgeState): readonly Point[] {
        return this.snapshot.moves.points.get(edge.number) ?? edge.record.points ?? [];
    }

    /** The positions of everything that moves with the selection. */
    heldPlaces(): Moves {
        const { document, moves } = this.snapshot;
        return annotations.placesOf(document, moves, this.held());
    }

    pointMoved(edge: EdgeState, index: number, by: Point): Moves {
        const move = (at: Point) => ({ x: at.x + by.x, y: at.y + by.y });
        const points = this.pointsOf(edge).map((at, i) => (i === index ? move(at) : at));
        return { ...annotations.noMoves, points: new Map([[edge.number, points]]) };
    }

    async drop(): Promise<void> {
        const { moves, document } = this.snapshot;
        await this.apply(annotations.stepsOf(moves, document));
        if (this.snapshot.moves === moves) this.set({ moves: annotations.noMoves });
    }

    nudge(by: Point): void {
        const { document, selectedEdge, selectedPoint } = this.snapshot;
        const edge = document.edges.get(selectedEdge ?? -1);
        this.drag(
            edge && selectedPoint !== null
                ? this.pointMoved(edge, selectedPoint, by)
                : annotations.moved(this.heldPlaces(), by),
        );
        void this.drop();
    }

    // Frames, notes, points of edges

    /** Adds a frame around the selection, or an empty frame at a point, and selects it. */
    async addFrame(point: Point): Promise<void> {
        const { document } = this.snapshot;
        const area = annotations.areaAround(document, this.held());
        await this.addAnnotation('frame', area ?? { ...point, ...annotations.emptyFrameSize });
    }

    async addNote(point: Point): Promise<void> {
        await this.addAnnotation('note', { ...point, ...annotations.noteSize });
    }

    private async addAnnotation(kind: AnnotationRecord['kind'], area: Box): Promise<void> {
        const { id, steps } = annotations.addAnnotation(this.snapshot.document, kind, area);
        const answer = await this.apply(steps);
        if (answer && !answer.error) this.selectIds([], [id]);
    }

    setAnnotation(record: AnnotationRecord, gesture?: string): void {
        void this.apply([annotations.setAnnotation(record)], gesture);
    }

    setPoints(edge: EdgeState, points: readonly Point[], selected: number | null, gesture?: string): void {
        void this.apply([annotations.setPoints(edge.record, points)], gesture)?.then((answer) => {
            if (!answer.error) this.selectEdge(edge.number, selected);
        });
    }

    /** Adds a point to an edge, by default in the middle of its longest segment. */
    addPoint(edge: EdgeState, at?: Point): void {
        const { document } = this.snapshot;
        const place = at ?? annotations.middleOf(document, edge);
        const { points, index } = annotations.withPoint(document, edge, place);
        this.setPoints(edge, points, index);
        this.say(`Added point ${index + 1} of ${points.length} to the edge.`);
    }

    removePoint(edge: EdgeState, index: number): void {
        const points = this.pointsOf(edge).filter((_, i) => i !== index);
        this.setPoints(edge, points, null);
    }

    connect(edge: EdgeRecord): void {
        void this.apply(connect(this.snapshot.document, edge));
    }

    deleteSelected(rewire: boolean): void {
        const { document, catalogue, selectedEdge, selectedPoint } = this.snapshot;
        const edge = selectedEdge === null ? undefined : document.edges.get(selectedEdge);
        if (edge && selectedPoint !== null) {
            this.removePoint(edge, selectedPoint);
            return;
        }
        if (edge) {
            void this.apply([removeEdge(edge.record)]);
            return;
        }
        const nodes = this.selectedNodes();
        void this.apply([
            ...(rewire ? removeAndRewire(document, catalogue, nodes) : removeNodes(nodes)),
            ...annotations.remove(this.selectedAnnotations()),
        ]);
    }

    /** Removes the selection and the contents of the selected frames, which are the items that are copied. */
    cutSelected(): void {
        const { nodes, annotations: chosen } = this.held();
        this.select(nodes, chosen);
        this.deleteSelected(false);
    }

    setProperties(settings: NodeProperty[], gesture?: string): void {
        const isParameter = this.showParameters(settings);
        void this.apply(
            [{ do: 'setProperties', settings }],
            gesture,
            isParameter ? verifyDelay : compileDelay,
        );
    }

    /**
     * Shows new values in the preview immediately if they are values of parameters.
     * @returns whether all of them are
     */
    private showParameters(settings: readonly NodeProperty[]): boolean {
        const { document, parameters } = this.snapshot;
        const next = [...parameters];
        for (const setting of settings) {
            const node = nodeById(document, setting.node);
            const key = `${setting.node} ${setting.name}`;
            const parameter = node && parameterOf(next, node, setting.name, this.sentValues.get(key));
            if (!parameter) return false;
            this.sentValues.set(key, setting.value);
            next[next.indexOf(parameter)] = withNumbers(parameter, parseNumbers(setting.value));
        }
        this.set({ parameters: next });
        return true;
    }

    /** Sets a value of a parameter in the bindings of the document, which does not change the programs. */
    setParameter(parameter: Parameter, values: Record<string, string>, gesture?: string): void {
        const parameters = this.snapshot.parameters.map((other) =>
            other.stream === parameter.stream && other.tag === parameter.tag
                ? { ...other, values: { ...other.values, ...values } }
                : other,
        );
        this.set({ parameters });
        const step = setBinding(this.snapshot.document, parameter.stream, parameter.tag, values);
        void this.apply([step], gesture, verifyDelay);
    }

    resetParameter(parameter: Parameter): void {
        const { stream, tag } = parameter;
        void this.apply([{ do: 'removeBinding', stream, tag }]);
    }

    /** Sets an attribute of the description or the render state; an empty value removes it. */
    setMaterial(part: keyof MaterialParts, name: string, value: string): void {
        const { [name]: _, ...others } = this.snapshot.document[part];
        const values = value === '' ? others : { ...others, [name]: value };
        void this.apply([{ do: part === 'description' ? 'setDescription' : 'setRenderState', values }]);
    }

    rename(id: string, newId: string): void {
        void this.apply([{ do: 'renameNode', id, newId }]);
    }

    // Adding, copying, pasting

    openAddMenu(menu: AddMenu | null): void {
        this.set({ addMenu: menu });
    }

    /** The default placement of a new node: in the selected edge, or after the selected node. */
    placement(): Placement {
        const { document, selectedEdge } = this.snapshot;
        const edge = selectedEdge === null ? undefined : document.edges.get(selectedEdge);
        if (edge) return { kind: 'into', edge: edge.record };
        const nodes = this.selectedNodes();
        return nodes.length === 1 && (nodes[0]!.outputs?.length ?? 0) > 0
            ? { kind: 'behind', node: nodes[0]!.record.id }
            : { kind: 'free' };
    }

    async add(choice: TypeChoice, point: Point, placement: Placement): Promise<void> {
        const { id, steps } = addNode(this.snapshot.document, choice, point, placement);
        const answer = await this.apply(steps);
        if (answer && !answer.error) this.selectIds([id]);
    }

    /** Copies an image file to the folder of the document and adds a node that reads it. */
    async addTexture(name: string, bytes: Uint8Array, point: Point): Promise<void> {
        const { answer } = await this.connection.request({ do: 'addTexture', name }, bytes);
        const type = this.snapshot.catalogue.get(textureType);
        if (answer.error || answer.file === undefined || !type) {
            this.say(describeError(answer));
            return;
        }
        const { id, steps } = addTextureNode(this.snapshot.document, type, answer.file, point);
        const added = await this.apply(steps);
        if (added && !added.error) this.selectIds([id]);
    }

    /** The ids of the selection and of the contents of the selected frames, for messages. */
    private heldIds(): { ids: string[]; annotations: string[] } {
        const { document } = this.snapshot;
        const held = this.held();
        return {
            ids: [...held.nodes].flatMap((n) => document.nodes.get(n)?.record.id ?? []),
            annotations: [...held.annotations].flatMap((n) => document.annotations.get(n)?.record.id ?? []),
        };
    }

    async copySelected(): Promise<string> {
        const held = this.heldIds();
        if (held.ids.length + held.annotations.length === 0) return '';
        const { answer } = await this.connection.request({ do: 'copy', ...held });
        if (answer.error) this.say(describeError(answer));
        return answer.text ?? '';
    }

    async paste(text: string, at?: Point): Promise<void> {
        if (text === '') return;
        const answer = await this.change({ do: 'paste', text, ...(at ?? {}) });
        if (answer.ids) this.selectIds(answer.ids, answer.annotations);
    }

    async duplicate(): Promise<void> {
        const { nodes, areas } = this.heldPlaces();
        const { document } = this.snapshot;
        const boxes = [...nodes].map(([n, at]) => ({ ...at, ...shapeOf(document.nodes.get(n)!) }));
        const area = around([...boxes, ...areas.values()]);
        if (!area) return;
        const text = await this.copySelected();
        await this.paste(text, { x: area.x + 30, y: area.y + area.height + 30 });
    }

    layOut(): void {
        const held = this.heldIds();
        const isPart = held.ids.length + held.annotations.length > 1;
        void this.change({ do: 'layout', ...(isPart ? held : {}) }).then((answer) => {
            if (answer.error) return;
            if (!isPart) this.set({ layouts: this.snapshot.layouts + 1 });
            this.say(isPart ? 'Laid out the selection.' : 'Laid out the graph.');
        });
    }

    // The file

    async save(force = false): Promise<void> {
        const answer = await this.change({ do: 'save', ...(force ? { force } : {}) });
        if (!answer.saved) return;
        this.set({ fileChange: null, message: `Saved ${this.snapshot.file}.` });
        void this.compare();
    }

    /** Shows or hides the differences from the file on disk. */
    toggleComparison(): void {
        this.set({ comparison: this.snapshot.comparison ? null : noDifferences });
        void this.compare();
    }

    private async compare(): Promise<void> {
        const isRunning = this.comparisonsWanted++ > this.comparisonsDone;
        while (!isRunning && this.comparisonsDone < this.comparisonsWanted) {
            const wanted = this.comparisonsWanted;
            if (this.snapshot.comparison) {
                const { answer } = await this.connection.request({ do: 'compare' });
                if (answer.error) this.say(describeError(answer));
                if (answer.comparison && this.snapshot.comparison)
                    this.set({ comparison: comparisonFrom(answer.comparison) });
            }
            this.comparisonsDone = wanted;
        }
    }

    /** The whole document in canonical form, as it would be saved. */
    async text(): Promise<string> {
        const { answer } = await this.connection.request({ do: 'text' });
        if (answer.error) this.say(describeError(answer));
        return answer.text ?? '';
    }

    reload(): void {
        void this.change({ do: 'reload' });
    }

    keepMine(): void {
        this.set({ fileChange: null, message: 'Saving will replace the changed file.' });
    }

    restore(isWanted: boolean): void {
        void this.change({ do: isWanted ? 'restore' : 'discard' });
    }
}

function moveToEnd(numbers: ReadonlySet<number>, last: readonly number[]): number[] {
    return [...[...numbers].filter((number) => !last.includes(number)), ...last];
}

function isSame(a: Programs, b: Programs | null): boolean {
    return b !== null && a.vertex === b.vertex && a.fragment === b.fragment && a.reflection === b.reflection;
}

export function describeError(answer: Answer): string {
    const { error } = answer;
    if (!error) return '';
    const place = [error.node ? `"${error.node}"` : error.file, error.port && `port "${error.port}"`];
    return [...place, error.message].filter(Boolean).join(': ');
}

function levelsOf({ answer, bytes }: Reply): TextureLevels | undefined {
    if (!answer.texture || !bytes) return undefined;
    const isHalf = answer.texture.format === 'half';
    const channels = 4;
    let from = 0;
    const levels = answer.texture.levels.map(({ width, height, layers = 1 }) => {
        const count = channels * width * height * layers;
        const part = bytes.slice(from, from + (isHalf ? 2 * count : count));
        from += part.length;
        return { width, height, layers, texels: isHalf ? new Uint16Array(part.buffer) : part };
    });
    return { isHalf, levels };
}

function toImage(reply: Reply): ImageData | undefined {
    const { picture } = reply.answer;
    if (!picture || !reply.bytes) return undefined;
    return new ImageData(new Uint8ClampedArray(reply.bytes), picture.width, picture.height);
}
