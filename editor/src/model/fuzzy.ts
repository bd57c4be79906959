/**
 * How well a string matches a query: 0 if a letter is missing, and higher for consecutive letters and
 * for letters at the start of words.
 */
export function fuzzyScore(query: string, text: string): number {
    const wanted = query.toLowerCase().replace(/\s+/g, '');
    if (wanted === '') return 1;
    const lower = text.toLowerCase();
    let best = 0;
    for (let start = lower.indexOf(wanted[0]!); start >= 0; start = lower.indexOf(wanted[0]!, start + 1))
        best = Math.max(best, scoreFrom(wanted, text, lower, start));
    return best;
}

function scoreFrom(wanted: string, text: string, lower: string, start: number): number {
    let score = 0;
    let previous = start - 2;
    let from = start;
    for (const letter of wanted) {
        const at = lower.indexOf(letter, from);
        if (at < 0) return 0;
        score += 1;
        if (at === previous + 1) score += 2;
        if (isWordStart(text, at)) score += 3;
        previous = at;
        from = at + 1;
    }
    return score + wanted.length / text.length + (start === 0 ? 2 : 0);
}

function isWordStart(text: string, at: number): boolean {
    if (at === 0) return true;
    const before = text[at - 1]!;
    const here = text[at]!;
    return !/[\p{L}\p{N}]/u.test(before) || (/\p{Lu}/u.test(here) && /\p{Ll}/u.test(before));
}

/** Sorts items by descending score and omits those with score 0. Items with equal scores keep their order. */
export function rank<T>(items: readonly T[], score: (item: T) => number): T[] {
    return items
        .map((item, index) => ({ item, index, score: score(item) }))
        .filter((entry) => entry.score > 0)
        .sort((a, b) => b.score - a.score || a.index - b.index)
        .map((entry) => entry.item);
}
