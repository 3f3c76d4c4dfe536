import js from '@eslint/js';
import globals from 'globals';

export default [
  js.configs.recommended,
  {
    files: ['**/*.js'],
    languageOptions: { ecmaVersion: 2022, sourceType: 'module' },
    linterOptions: { reportUnusedDisableDirectives: 'error' },
    rules: {
      eqeqeq: 'error',
      'no-var': 'error',
      'prefer-const': 'error',
      'no-shadow': 'error',
      'no-implied-eval': 'error',
      'no-restricted-properties': [
        'error',
        { property: 'innerHTML', message: 'Texts of a description are never markup.' },
        { property: 'outerHTML', message: 'Texts of a description are never markup.' },
        { property: 'insertAdjacentHTML', message: 'Texts of a description are never markup.' },
      ],
    },
  },
  { files: ['**/script/*.js'], languageOptions: { globals: globals.browser } },
  {
    files: ['**/*.test.js', '**/browser.js'],
    languageOptions: { globals: { ...globals.node, ...globals.browser } },
  },
];
