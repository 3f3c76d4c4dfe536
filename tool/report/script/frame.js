// What stands around the views: the head with the theme, the tabs, the printing.

import { button, element } from './dom.js';

const THEMES = ['auto', 'light', 'dark'];
const STORE = 'tarnlet-theme';

function stored() {
  try {
    return localStorage.getItem(STORE);
  } catch {
    return null; // the browser keeps nothing for files
  }
}

export function themeSwitch() {
  const system = matchMedia('(prefers-color-scheme: dark)');
  let theme = THEMES.includes(stored()) ? stored() : 'auto';
  const apply = () => {
    const dark = theme === 'dark' || (theme === 'auto' && system.matches);
    document.documentElement.dataset.theme = dark ? 'dark' : 'light';
    node.textContent = { auto: 'Auto', light: 'Light', dark: 'Dark' }[theme];
    node.setAttribute('aria-label', `Colours: ${theme}`);
  };
  const node = button(
    '',
    () => {
      theme = THEMES[(THEMES.indexOf(theme) + 1) % THEMES.length];
      try {
        localStorage.setItem(STORE, theme);
      } catch {
        // It lasts as long as the page.
      }
      apply();
    },
    { class: 'theme', title: 'Light or dark' },
  );
  system.addEventListener('change', apply);
  apply();
  return node;
}

// views: {id, label, badge, make()}; made when they are first opened.
export class Tabs {
  constructor(views) {
    this.views = views;
    this.made = new Map();
    this.panel = element('div', { class: 'panel', role: 'tabpanel', id: 'panel', tabindex: -1 });
    this.tabs = views.map((view) =>
      element(
        'button',
        {
          type: 'button',
          role: 'tab',
          id: `tab-${view.id}`,
          'aria-controls': 'panel',
          'aria-selected': 'false',
          tabindex: -1,
          onclick: () => this.open(view.id),
        },
        view.label,
        view.badge
          ? element('span', { class: `badge ${view.badge.kind ?? ''}` }, view.badge.text)
          : null,
      ),
    );
    this.bar = element(
      'div',
      {
        class: 'tabs',
        role: 'tablist',
        'aria-label': 'Views',
        onkeydown: (event) => this.key(event),
      },
      this.tabs,
    );
  }

  view(id) {
    if (!this.made.has(id)) this.made.set(id, this.views.find((view) => view.id === id).make());
    return this.made.get(id);
  }

  has(id) {
    return this.views.some((view) => view.id === id);
  }

  open(id) {
    if (this.current === id || !this.has(id)) return;
    this.current = id;
    this.tabs.forEach((tab, i) => {
      const chosen = this.views[i].id === id;
      tab.setAttribute('aria-selected', String(chosen));
      tab.tabIndex = chosen ? 0 : -1;
      if (chosen) tab.scrollIntoView({ block: 'nearest', inline: 'nearest' });
    });
    this.panel.setAttribute('aria-labelledby', `tab-${id}`);
    this.panel.replaceChildren(this.view(id).node);
    history.replaceState(null, '', `#${id}`);
  }

  key(event) {
    const at = this.views.findIndex((view) => view.id === this.current);
    const count = this.views.length;
    const next = {
      ArrowRight: (at + 1) % count,
      ArrowLeft: (at + count - 1) % count,
      Home: 0,
      End: count - 1,
    }[event.key];
    if (next === undefined) return;
    event.preventDefault();
    this.open(this.views[next].id);
    this.tabs[next].focus();
  }
}
