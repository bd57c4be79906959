/** Hands a text to the browser, which asks where to put it or takes its folder of downloads. */
export function download(name: string, type: string, text: string): void {
    const address = URL.createObjectURL(new Blob([text], { type }));
    const link = document.createElement('a');
    link.href = address;
    link.download = name;
    link.click();
    URL.revokeObjectURL(address);
}
