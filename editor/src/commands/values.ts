import type { Changes } from '../model/changes.ts';
import { compileDelay } from '../model/compileTimer.ts';
import { setBinding, type NodeProperty } from '../model/edits.ts';
import type { MaterialParts } from '../model/messages.ts';
import { withSettings, type Parameter } from '../model/parameters.ts';
import type { Store } from '../model/store.ts';

const verifyDelay = 400; // in milliseconds, after the last value of a parameter

/** Commands that set properties, parameters and attributes. The preview shows new values of parameters immediately. */
export class Values {
    constructor(
        private readonly store: Store,
        private readonly changes: Changes,
    ) {}

    setProperties(settings: NodeProperty[], gesture?: string): void {
        const { document, parameters, sentValues } = this.store.get();
        const shown = withSettings(document, parameters, sentValues, settings);
        if (shown) this.store.set(shown);
        const step = { do: 'setProperties' as const, settings };
        void this.changes.apply([step], gesture, shown ? verifyDelay : compileDelay);
    }

    /** Sets a value of a parameter in the bindings of the document, which does not change the programs. */
    setParameter(parameter: Parameter, values: Record<string, string>, gesture?: string): void {
        const { document, parameters } = this.store.get();
        const { stream, tag } = parameter;
        this.store.set({
            parameters: parameters.map((other) =>
                other.stream === stream && other.tag === tag
                    ? { ...other, values: { ...other.values, ...values } }
                    : other,
            ),
        });
        void this.changes.apply([setBinding(document, stream, tag, values)], gesture, verifyDelay);
    }

    resetParameter({ stream, tag }: Parameter): void {
        void this.changes.apply([{ do: 'removeBinding', stream, tag }]);
    }

    /** Sets an attribute of the description or the render state; an empty value removes it. */
    setMaterial(part: keyof MaterialParts, name: string, value: string): void {
        const { [name]: _, ...others } = this.store.get().document[part];
        const values = value === '' ? others : { ...others, [name]: value };
        void this.changes.apply([
            { do: part === 'description' ? 'setDescription' : 'setRenderState', values },
        ]);
    }
}
