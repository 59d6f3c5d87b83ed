#!/usr/bin/python3
# Ansible module: an assembly station's settings, storage folders and input relations brought
# to a wanted state through the station-config tool of the station's machine.

DOCUMENTATION = r'''
module: station_config
short_description: Settings, storage folders and input relations of an assembly station
description:
  - Brings one station directory to the wanted state through C(station-config), which checks
    every value against what the station accepts and keeps the replaced document as a version
    (C(station-config history), C(rollback)).
  - Reports C(changed) only when something changed; supports check mode and diff mode.
  - Give values as the station stores them (C(station-config keys KEY) lists them); a value
    given otherwise (a language by its displayed name) is accepted, and compared as stored.
options:
  station:
    description: The station directory (holding preconfiguration.json).
    required: true
    type: path
  tool:
    description: The station-config program.
    type: path
    default: station-config
  settings:
    description: Dotted key to value, e.g. C(general.sound_volume=55); lists for text lists.
    type: dict
    default: {}
  unset:
    description: Keys to remove, so that the station uses its default.
    type: list
    elements: str
    default: []
  folders:
    description:
      - Storage folders by alias name. C(type) is internal, external or samba; a samba folder
        needs C(address) and C(path) (the share path) and may have C(domain), C(identifier)
        (login) and C(password). C(role) gives the folder a role (C(undefined) for none;
        omitted, the folder keeps its role). C(state=absent) removes the folder.
    type: list
    elements: dict
    default: []
  relations:
    description: Input code (C(binaryCode)) to the sequence it launches (C(sequenceBaseName)); C(state=absent) removes it.
    type: list
    elements: dict
    default: []
'''

EXAMPLES = r'''
- name: Plant settings
  station_config:
    station: /srv/station
    settings:
      general.sound_volume: 55
      sync.excluded_patterns: ["*.tmp", "*.part"]
    folders:
      - {aliasName: Cell_Share, type: samba, address: "10.0.4.2", path: "results/{{ inventory_hostname }}",
         identifier: operator, password: "{{ share_password }}", role: pdfResults}
    relations:
      - {binaryCode: 9, sequenceBaseName: cover_plate_left}
'''

import json

from ansible.module_utils.basic import AnsibleModule


FOLDER_OPTIONS = dict(
    aliasName=dict(type='str', required=True),
    type=dict(type='str', choices=['internal', 'external', 'samba']),
    path=dict(type='str'),
    domain=dict(type='str'),
    address=dict(type='str'),
    identifier=dict(type='str'),
    password=dict(type='str', no_log=True),
    enabled=dict(type='bool'),
    role=dict(type='str'),
    state=dict(type='str', default='present', choices=['present', 'absent']),
)

RELATION_OPTIONS = dict(
    binaryCode=dict(type='int', required=True),
    sequenceBaseName=dict(type='str'),
    state=dict(type='str', default='present', choices=['present', 'absent']),
)


def value_text(value):
    """The value as station-config set takes it."""
    if isinstance(value, bool):
        return 'true' if value else 'false'
    if isinstance(value, (list, dict)):
        return json.dumps(value)
    return str(value)


def shown(value):
    return '' if value is None else json.dumps(value, indent=2, sort_keys=True) + '\n'


class Station(object):
    def __init__(self, module):
        self.module = module
        self.changed = False
        self.diff = []

    def run(self, arguments, data=None):
        p = self.module.params
        command = [p['tool'], '--station', p['station'], '--json'] + arguments
        rc, out, err = self.module.run_command(command, data=data)
        if rc != 0:
            self.module.fail_json(msg=err.strip() or out.strip(), rc=rc, command=' '.join(arguments[:2]))
        try:
            return json.loads(out)
        except ValueError:
            return {}

    def note(self, header, result):
        if result.get('changed'):
            self.changed = True
            self.diff.append(dict(before_header=header, after_header=header,
                                  before=shown(result.get('before')), after=shown(result.get('after'))))

    # set and unset always save: look first, change only when the look says so.
    def key(self, verb, arguments, header):
        look = self.run([verb, '--check', '--'] + arguments)
        self.note(header, look)
        if look.get('changed') and not self.module.check_mode:
            self.run([verb, '--'] + arguments)

    # The folder and relation commands change nothing when nothing differs.
    def state(self, arguments, header, data=None):
        check = ['--check'] if self.module.check_mode else []
        self.note(header, self.run(arguments[:1] + check + ['--'] + arguments[1:], data))


def main():
    module = AnsibleModule(
        argument_spec=dict(
            station=dict(type='path', required=True),
            tool=dict(type='path', default='station-config'),
            settings=dict(type='dict', default={}),
            unset=dict(type='list', elements='str', default=[]),
            folders=dict(type='list', elements='dict', default=[], options=FOLDER_OPTIONS),
            relations=dict(type='list', elements='dict', default=[], options=RELATION_OPTIONS),
        ),
        supports_check_mode=True,
    )
    station = Station(module)
    p = module.params
    for key, value in p['settings'].items():
        station.key('set', [key, value_text(value)], key)
    for key in p['unset']:
        station.key('unset', [key], key)
    for folder in p['folders']:
        alias = folder['aliasName']
        if folder['state'] == 'absent':
            station.state(['folder-remove', alias], 'folder ' + alias)
            continue
        wanted = dict((k, v) for k, v in folder.items() if v is not None and k != 'state')
        station.state(['folder-set', '-'], 'folder ' + alias, data=json.dumps(wanted))
    for relation in p['relations']:
        code = str(relation['binaryCode'])
        if relation['state'] == 'absent':
            station.state(['relation-remove', code], 'relation ' + code)
        elif not relation.get('sequenceBaseName'):
            module.fail_json(msg='relation %s: sequenceBaseName is required unless state=absent' % code)
        else:
            station.state(['relation-set', code, relation['sequenceBaseName']], 'relation ' + code)
    module.exit_json(changed=station.changed, diff=station.diff)


if __name__ == '__main__':
    main()
