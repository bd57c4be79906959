export const compileDelay = 15; // in milliseconds, so that consecutive answers cause a single compilation

/** Decides when to compile. */
export class CompileTimer {
    private timer: ReturnType<typeof setTimeout> | undefined;
    private isStarted = false;

    constructor(private readonly compile: () => void) {}

    /** Allows compilation. Called once the page shows the graph, because compilation would delay that. */
    start(): void {
        this.isStarted = true;
        this.compileSoon(0);
    }

    compileSoon(delay: number): void {
        if (!this.isStarted) return;
        clearTimeout(this.timer);
        this.timer = setTimeout(() => {
            this.timer = undefined;
            this.compile();
        }, delay);
    }

    /**
     * Repeats a compilation whose result is out of date. This is necessary because the change that made it
     * so may not start a compilation, for example if it moved a node.
     */
    compileAgain(): void {
        if (this.timer === undefined) this.compileSoon(compileDelay);
    }
}
