import { h, render } from "preact";
import { App } from "./app";
import type { Report } from "./app";
import { Engine } from "./engine";
import { fromBase85, unpacked } from "./link";
import type { Radio } from "./link";

/** What the page carries in a block of data. */
function data(id: string): string {
  return document.getElementById(id)?.textContent ?? "";
}

async function start(): Promise<void> {
  const root = document.getElementById("root") as HTMLElement;
  try {
    const engine = await Engine.from(await unpacked(fromBase85(data("engine").trim())));
    Object.assign(window, { qorEngine: engine });
    const report = data("report").trim();
    render(
      <App
        engine={engine}
        examples={JSON.parse(data("examples")) as Radio[]}
        report={report === "" ? null : (JSON.parse(report) as Report)}
      />,
      root,
    );
    root.dataset.ready = "yes";
  } catch (error) {
    root.textContent = `This browser cannot run the page: ${String(error)}`;
  }
}

void start();
