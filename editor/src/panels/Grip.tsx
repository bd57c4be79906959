const least = 300;
const most = 800;
const step = 20;

/** The left edge of the panels. Dragging it resizes them and the image of the surface. */
export function Grip({ width, onChange }: { width: number; onChange: (width: number) => void }) {
    const set = (wanted: number) => onChange(Math.round(Math.min(most, Math.max(least, wanted))));
    return (
        <div
            className="grip"
            role="separator"
            aria-orientation="vertical"
            aria-label="Width of the panels"
            aria-valuenow={width}
            aria-valuemin={least}
            aria-valuemax={most}
            tabIndex={0}
            title="Drag to make the surface larger or smaller"
            onPointerDown={(event) => event.currentTarget.setPointerCapture(event.pointerId)}
            onPointerMove={(event) => {
                if (event.buttons !== 0) set(width - event.movementX);
            }}
            onKeyDown={(event) => {
                const by = { ArrowLeft: step, ArrowRight: -step }[event.key];
                if (by === undefined) return;
                event.preventDefault();
                set(width + by);
            }}
        />
    );
}
