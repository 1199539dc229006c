// Vantrel's remote page: the state asked for every second, the buttons sent as POSTs with the
// token in a header (which no form of another site can send). The token comes in the address's
// fragment, which browsers never send to a server nor put in a Referer, and is kept for this tab.
"use strict";
(function () {
  const fromAddress = new URLSearchParams(location.hash.slice(1)).get("token");
  if (fromAddress) {
    sessionStorage.setItem("vantrel-token", fromAddress);
    history.replaceState(null, "", location.pathname);
  }
  const token = sessionStorage.getItem("vantrel-token") || "";
  const $ = (id) => document.getElementById(id);
  let lists = [];

  function say(text) { $("answer").textContent = text || ""; }

  async function call(method, path, body) {
    const response = await fetch(path, {
      method: method,
      headers: Object.assign({ "X-Vantrel-Token": token }, body ? { "Content-Type": "application/json" } : {}),
      body: body ? JSON.stringify(body) : undefined,
      cache: "no-store",
      credentials: "omit",
    });
    if (response.status === 401 || response.status === 429) {
      $("locked").hidden = false;
      $("status").textContent = response.status === 429 ? "Wait a moment" : "No access";
      throw new Error("refused");
    }
    return response.json();
  }

  async function send(verb, payload) {
    try {
      const result = await call("POST", "/api/" + verb, payload || {});
      say(result.ok ? "" : result.reason);
      refresh();
    } catch (e) { /* said in the status */ }
  }

  function button(text, verb, payload, extra) {
    const b = document.createElement("button");
    b.textContent = text;
    b.id = verb + "-button";
    if (extra) b.className = extra;
    b.addEventListener("click", () => send(verb, payload));
    return b;
  }

  function showState(state) {
    const windows = $("window-list");
    windows.replaceChildren();
    for (const w of state.windows) {
      const li = document.createElement("li");
      const title = document.createElement("div");
      title.className = "title";
      title.textContent = w.slot + ". " + (w.title || w.address);
      const address = document.createElement("div");
      address.className = "address";
      address.textContent = w.address + (w.current ? " (current)" : "");
      li.append(title, address);
      const buttons = document.createElement("div");
      buttons.className = "buttons";
      buttons.append(button("Reload", "reload", { slot: w.slot }));
      li.append(buttons);
      windows.append(li);
    }
    $("no-windows").hidden = state.windows.length > 0;
    const runs = $("run-list");
    runs.replaceChildren();
    for (const r of state.runs) {
      const li = document.createElement("li");
      const title = document.createElement("div");
      title.className = "title";
      title.textContent = r.list + ": page " + r.position + " of " + r.pages + (r.paused ? " (paused)" : "");
      const buttons = document.createElement("div");
      buttons.className = "buttons";
      buttons.append(r.paused ? button("Resume", "resume") : button("Pause", "pause"),
                     button("Previous", "previous"), button("Next", "next"), button("Stop", "stop", {}, "stop"));
      li.append(title, buttons);
      runs.append(li);
    }
    $("no-runs").hidden = state.runs.length > 0;
    if (JSON.stringify(state.lists || []) !== JSON.stringify(lists)) {
      lists = state.lists || [];
      const picker = $("list-picker");
      picker.replaceChildren(...lists.map((name) => new Option(name, name)));
    }
    $("status").textContent = "Connected";
    $("locked").hidden = true;
  }

  async function refresh() {
    try { showState(await call("GET", "/api/state")); }
    catch (e) { if (e.message !== "refused") $("status").textContent = "Vantrel does not answer"; }
  }

  $("run-form").addEventListener("submit", (event) => {
    event.preventDefault();
    send("run", { list: $("list-picker").value, interval: Number($("interval").value), loop: $("loop").checked });
  });
  $("open-form").addEventListener("submit", (event) => {
    event.preventDefault();
    send("open", { address: $("address").value });
  });
  if (!token) { $("locked").hidden = false; $("status").textContent = "No access"; }
  else { refresh(); setInterval(refresh, 1000); }
})();
