<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_FR">
<context>
    <name></name>
    <message id="Test_hello">
        <source>Hello</source>
        <translation>Bonjour</translation>
    </message>
</context>
</TS>
