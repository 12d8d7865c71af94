// The page around the picture of a network.
#ifndef YFW_FRONTENDS_PICTURES_PAGE_TEMPLATE_H
#define YFW_FRONTENDS_PICTURES_PAGE_TEMPLATE_H

namespace yfw::pictures {

// HTML with the marks @TITLE@, @SVG@ and @DATA@ once each, in this order. The data are the segments of a
// topology: an array of ends each.
inline constexpr const char *page_template = R"page(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>@TITLE@</title>
<style>
html, body { margin: 0; height: 100%; font: 14px/1.4 Helvetica, Arial, sans-serif; color: #222; }
body { display: flex; }
#picture { flex: 1; overflow: hidden; position: relative; cursor: grab; touch-action: none; }
#picture.moving { cursor: grabbing; }
#picture svg { width: 100%; height: 100%; display: block; }
#tools { position: absolute; left: 12px; bottom: 12px; }
#tools button { font-size: 16px; min-width: 36px; height: 36px; }
#details { width: 26em; overflow: auto; border-left: 1px solid #ccc; padding: 12px 16px; box-sizing: border-box; }
#details h2 { font-size: 16px; margin: 16px 0 4px; overflow-wrap: anywhere; }
#details h3 { font-size: 13px; margin: 8px 0 2px; font-weight: normal; color: #555; }
#details td { vertical-align: top; padding: 1px 8px 1px 0; overflow-wrap: anywhere; }
#details td:first-child { color: #555; white-space: nowrap; }
.link, .shared, .port { cursor: pointer; }
.link:hover path, .chosen path, .chosen ellipse { stroke: #d1495b; stroke-width: 3; }
.chosen text { fill: #d1495b; font-weight: bold; }
</style>
</head>
<body>
<div id="picture">@SVG@<div id="tools"><button data-zoom="0.8" title="Zoom in">+</button>
<button data-zoom="1.25" title="Zoom out">&minus;</button> <button data-zoom="0" title="Show all">All</button></div></div>
<div id="details" aria-live="polite"><p>Click a link to see what both ends have heard. Drag to move, turn the wheel to
zoom.</p></div>
<script>
"use strict";
const segments = @DATA@;
const picture = document.getElementById("picture");
const svg = picture.querySelector("svg");
const details = document.getElementById("details");
const whole = svg.viewBox.baseVal;
const all = {x: whole.x, y: whole.y, width: whole.width, height: whole.height};
let view = {...all};
svg.removeAttribute("width");
svg.removeAttribute("height");
// The browser's own hints over lines name nodes of the graph.
for (const title of svg.querySelectorAll("title")) title.remove();

function show(next) {
    view = next;
    svg.setAttribute("viewBox", [view.x, view.y, view.width, view.height].join(" "));
}

// Where a point of the window lies in the picture.
function point(event) {
    const matrix = svg.getScreenCTM().inverse();
    return {x: matrix.a * event.clientX + matrix.e, y: matrix.d * event.clientY + matrix.f};
}

function zoom(factor, at) {
    const width = Math.min(Math.max(view.width * factor, all.width / 100), all.width * 4);
    const scale = width / view.width;
    show({x: at.x - (at.x - view.x) * scale, y: at.y - (at.y - view.y) * scale, width, height: view.height * scale});
}

picture.addEventListener("wheel", event => {
    event.preventDefault();
    zoom(event.deltaY < 0 ? 0.8 : 1.25, point(event));
}, {passive: false});

for (const button of document.querySelectorAll("[data-zoom]"))
    button.addEventListener("click", () => {
        const factor = Number(button.dataset.zoom);
        if (factor === 0) show({...all});
        else zoom(factor, {x: view.x + view.width / 2, y: view.y + view.height / 2});
    });

let grip = null;
let moved = false;
svg.addEventListener("pointerdown", event => {
    grip = point(event);
    moved = false;
});
window.addEventListener("pointermove", event => {
    if (grip === null) return;
    const now = point(event);
    const distance = Math.hypot(now.x - grip.x, now.y - grip.y) / view.width;
    if (!moved && distance < 0.004) return; // a click with an unsteady hand
    moved = true;
    picture.classList.add("moving");
    show({...view, x: view.x - (now.x - grip.x), y: view.y - (now.y - grip.y)});
});
window.addEventListener("pointerup", () => {
    grip = null;
    picture.classList.remove("moving");
});

// What neighbors sent is only ever text.
function add(parent, tag, text) {
    const element = document.createElement(tag);
    if (text !== undefined) element.textContent = text;
    parent.append(element);
    return element;
}

function describe(number) {
    details.replaceChildren();
    for (const end of segments[number]) {
        add(details, "h2", end.router + " " + end.port);
        if (end.heard.length === 0)
            add(details, "p", end.read ? "has heard nothing here" : "was not read");
        for (const heard of end.heard) {
            add(details, "h3", "has heard " + heard.of);
            const table = add(details, "table");
            for (const [name, value] of heard.rows) {
                const row = add(table, "tr");
                add(row, "td", name);
                add(row, "td", value);
            }
        }
    }
    for (const chosen of svg.querySelectorAll(".chosen")) chosen.classList.remove("chosen");
    for (const part of svg.querySelectorAll(".segment-" + number)) part.classList.add("chosen");
}

svg.addEventListener("click", event => {
    const part = event.target.closest(".link, .shared, .port");
    if (part === null || moved) return;
    const name = [...part.classList].find(name => name.startsWith("segment-"));
    describe(Number(name.slice("segment-".length)));
});
</script>
</body>
</html>
)page";

} // namespace yfw::pictures

#endif
