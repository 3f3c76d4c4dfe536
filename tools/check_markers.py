#!/usr/bin/env python3
"""Names the markers that wait for a look-ahead token.

A marker is an empty rule of the grammar that tells the scanner how to read on (rescan, mode_*,
*_text). It works only where the parser reduces it before it asks for the next token: in a state
that has no other action. The exceptions below are meant; each says why nothing is lost. Reads the
report of `bison --xml`; exits with 1 when a marker is neither early nor listed, or a listed one is
early.
"""
import sys
import xml.etree.ElementTree as ElementTree

# marker: the rules (left-hand sides) in whose states it may see the next token first.
ALLOWED = {
    # The state that also takes `error` has to see the first name of the clause: there a name of
    # digits alone is read as one, elsewhere in the clause as a number. Other names read the same.
    'mode_integer': {'logical_port_description',
                     # The mode is that of a time: digits alone are one, whatever ports there are.
                     # Any other name reads the same in all modes and tells that clock cycles
                     # follow.
                     'wait_spec', 'aio_pulse_option', 'wait_specification',
                     # REPEAT and LOOP read the same in all modes; the counts come after them.
                     'flow_definition', 'opt_repeat_list', 'repeat_list',
                     'initialize_block', 'repeat_block', 'terminate_block',
                     'activity_or_loop_list'},
    # A ',' goes on with the list; the ']' reads the same in both modes.
    'mode_none': {'input_cell_list', 'opt_input_cell_list'},
    # After the word that begins a duration the mode of a time is set already.
    'mode_real': {'wait_spec', 'wait_specification'},
}


# Rules that are not empty and must be reduced as early: they store a string, choose the standard,
# switch the input to a package file and back, or end a mode.
EARLY = {'quoted_string', 'std_vhdl_package_id', 'package_searched', 'user_package', 'use_stmt'}


def is_marker(name):
    return name == 'rescan' or name.startswith('mode_') or name.endswith('_text')


def main(path):
    root = ElementTree.parse(path).getroot()
    rules = {rule.get('number'): rule for rule in root.find('grammar/rules')}
    markers = {number: rule.findtext('lhs') for number, rule in rules.items()
               if rule.findtext('lhs') in EARLY
               or rule.find('rhs/empty') is not None and is_marker(rule.findtext('lhs'))}
    terminals = {terminal.get('name') for terminal in root.find('grammar/terminals')}

    late = {}
    for state in root.find('automaton'):
        reductions = state.findall('actions/reductions/reduction')
        reduced = {markers[r.get('rule')] for r in reductions if r.get('rule') in markers}
        shifts = [t for t in state.findall('actions/transitions/transition')
                  if t.get('type') == 'shift' and t.get('symbol') in terminals]
        if not reduced or (not shifts and len(reductions) == 1):
            continue
        owners = {rules[item.get('rule-number')].findtext('lhs')
                  for item in state.findall('itemset/item')
                  if item.get('dot') != '0'}
        for marker in reduced:
            late.setdefault(marker, set()).update(owners)

    wrong = 0
    for marker, owners in sorted(late.items()):
        for owner in sorted(owners - set(ALLOWED.get(marker, ()))):
            print(f'{marker} waits for a look-ahead token in {owner}')
            wrong = 1
    for marker, owners in ALLOWED.items():
        for owner in sorted(set(owners) - late.get(marker, set())):
            print(f'{marker} in {owner} no longer waits: take it off the list')
            wrong = 1
    return wrong


if __name__ == '__main__':
    sys.exit(main(sys.argv[1]))
