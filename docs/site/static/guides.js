// The style sheet of Debian's theme contains no rules for the theme "auto", so it is replaced by that of the system.
const dark = matchMedia("(prefers-color-scheme: dark)");

function followSystem() {
  if (document.body.dataset.theme === "auto") document.body.dataset.theme = dark.matches ? "dark" : "light";
}

new MutationObserver(followSystem).observe(document.body, { attributes: true, attributeFilter: ["data-theme"] });
followSystem();
