// Chooses the sequence to launch from the scanned part number.
function sequenceFor(partNumber) {
    return partNumber.endsWith("-R") ? "gearbox_housing_rear" : "gearbox_housing_front";
}
