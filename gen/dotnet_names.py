"""What the classes, rows and values of the schema are called in C#.

Most names follow from those of the schema. The tables below have the rest: names that would be
taken for others of the platform, that stand twice, or that would say too little beside the others.
"""

import re

CLASSES = {
    "Zol": "ZolDocument",
    "ColorType": "NamedColor",
    "Version": "DocumentVersion",
    "Process": "CoatingProcess",
    "Specification": "SpotSize",
    "anon_TextValue": "TagContent",
    "CollectionColorSpaceSpecificationType": "SharedSpecifications",
    "CustomAttributeType": "CustomProperty",
    "CustomAttributeType_ValueChoice": "CustomPropertyValue",
    "CustomAttributes": "CustomPropertyHolder",
    "ColorQualityControlType": "QualityControl",
    "StandardAndMeasurementType": "StandardAndMeasurements",
    "PhysicalSampleType": "PhysicalSample",
    "CalibrationStateType": "Calibration",
    "ProfileType": "ColorProfile",
    "ProfileChoice": "ProfileSource",
    "ProfileType_Parameters": "ProfileParameter",
    "ProfileType_Parameters_ValueChoice": "ProfileParameterValue",
    "Parameters": "FunctionParameter",
    "ValueChoice": "FunctionParameterValue",
    "GeometryChoiceType": "MeasurementGeometry",
    "IlluminationOptionsType": "Illumination",
    "Illuminant": "NamedIlluminant",
    "SpectrumType": "SpectrumQuantity",
    "SDKType": "SdkInformation",
    "PlatformType": "PlatformInformation",
    # Colour spaces.
    "ColorSpaceType": "ColorSpace",
    "ColorSpaceRecipeType": "RecipeSpace",
    "ColorSpaceGenericType": "GenericSpace",
    "ColorSpaceEmissiveGenericType": "EmissiveGenericSpace",
    "ColorSpaceDensityType": "DensitySpace",
    "ColorSpaceCIExyYType": "CieXyY",
    "ColorSpaceEmissiveCIExyYType": "EmissiveCieXyY",
    "AxisType": "SpaceAxis",
    "AxisValueChoice": "SpaceAxisValue",
    "FloatingPointValueType": "AxisCoordinate",
    "DensityType": "OpticalDensity",
    "Density": "SpecificGravity",
    "Color": "CmykChannel",
    "SpotColorType": "SpotColor",
    "EmissiveSpectralPointType": "EmissivePoint",
    "ColorantElementType_Colorant": "RecipeColorant",
    "ColorantElementType": "RecipeElement",
    "BaseElementType": "RecipeBaseElement",
    "Base": "RecipeBase",
    "Recipe": "FanDeckRecipe",
    "ColorantElement": "FanDeckElement",
    "Colorant": "FanDeckColorant",
    "ColorName": "FanDeckName",
    # Functions.
    "FunctionType": "Calculation",
    "FunctionGenericType": "GenericCalculation",
    "FunctionDEType": "DeltaE",
    "FunctionMeanDEType": "MeanDeltaE",
    "FunctionDE94Type": "DeltaE94",
    "FunctionDE2000Type": "DeltaE2000",
    "FunctionDEcmcType": "DeltaECmc",
    "FunctionTolerance": "ToleranceCalculation",
    "LimitsType": "ToleranceLimits",
    # Specifications.
    "ColorSpaceSpecificationType": "Specification",
    "ColorSpaceSpecificationSpectrumType": "SpectrumSpecification",
    "ColorSpaceSpecificationSpectrumGenericType": "GenericSpecification",
    "ColorSpaceSpecificationSpectrumTristimulusType": "TristimulusSpecification",
    "ColorSpaceSpecificationSpectrumSpectralType": "SpectralSpecification",
    "ColorSpaceSpecificationEmissiveType": "EmissiveSpecification",
    "ColorSpaceSpecificationEmissiveGenericType": "EmissiveGenericSpecification",
    "ColorSpaceSpecificationEmissiveTristimulusType": "EmissiveTristimulusSpecification",
    "ColorSpaceSpecificationEmissiveSpectralType": "EmissiveSpectralSpecification",
}
ENUMS = {
    "DeviceFilter": "DeviceFilterKind", "Direction": "ProfileDirection", "Target": "TestChart",
    "AxisNominalScale": "AxisScale", "SpectrumType": "SpectrumKind",
    "ToleranceType": "ToleranceKind", "ToleranceParameter": "ToleranceParameterKind",
}
# By row, or by class and row.
PROPERTIES = {
    "any": "Elements", "anon_TextValue": "Content", "GeometryChoice": "Geometry",
    "IlluminationOptions": "Illumination", "ValueChoice": "Value", "AxisValueChoice": "Value",
    "ProfileChoice": "Source", "CollectionColorSpaceSpecification": "Specifications",
    "ReflectancePoint": "Points", "EmissiveSpectralPoint": "Points",
    "CustomAttribute": "CustomProperties", "CustomAttributes": "CustomProperties",
    "CapY": "LuminanceY", "Axis": "Axes", "Person": "People", "Density": "Density",
    "ColorType.ColorSpace": "Spaces", "CustomAttributes.CustomAttribute": "CustomProperty",
    "ColorType.ColorName": "Name", "ColorType.ColorNumber": "Number",
    "ColorSetType.ColorSetName": "Name", "PaletteType.PaletteName": "Name",
    "PaletteType.PaletteVersion": "Version", "PaletteType.PalettePartNumber": "PartNumber",
    "Zol.ColorQualityControl": "QualityControls", "AxisType.AxisName": "Name",
    "ToleranceParameterType.ToleranceParameter": "Parameter", "ColorSpaceDensityType.Density": "Densities",
    "StandardAndMeasurementType.Measurement": "Measurements", "SpectrumType.SpectrumType": "Value",
    "FunctionTolerance.ToleranceType": "Kind", "ColorSpaceCMYKPlusNType.Color": "Channels",
    "ColorSpaceRecipeType.ColorantElement": "Colorants", "Recipe.ColorantElement": "Colorants",
    "FunctionTolerance.Parameters": "Parameters", "FunctionGenericType.Parameters": "Parameters",
    "ColorType.TagValues": "TagValues", "Measurement.Function": "Results",
    "FloatingPointValueType.AxisNominalScale": "Scale",
    "ValueChoice.Double": "Number", "ValueChoice.String": "Text",
    "FloatingPointValueType.AxisNominalMin": "NominalMinimum",
    "FloatingPointValueType.AxisNominalMax": "NominalMaximum",
}
VALUES = {
    "NA": "NotApplicable", "2_Degree": "Degrees2", "10_Degree": "Degrees10", "9300": "Kelvin9300",
    "8": "Bits8", "16": "Bits16", "32": "Bits32", "DIN-NB": "DinNb", "DIN": "Din",
    "DE*": "DeltaE", "DE00": "DeltaE2000", "DE94": "DeltaE94", "DE99": "DeltaE99",
    "DEcmc": "DeltaECmc", "Defmc2": "DeltaEFmc2", "DIN6172": "Din6172",
    "DEDIN6175": "DeltaEDin6175", "HunterDE": "HunterDeltaE", "L*C*H*": "CieLch",
    "L*a*b*": "CieLab", "L*a*b*PlusMinus": "CieLabPlusMinus", "IT8.7/1": "IT87Part1",
    "IT8.7/2": "IT87Part2", "IT8.7/3": "IT87Part3", "IT8.7/4": "IT87Part4", "None": "NoFilter", "Ex": "ExStatus",
    "UVExcluded": "UVExcluded", "ECI2002": "Eci2002", "CMYK": "Cmyk", "sRGB": "Srgb",
    "AdobeRGB": "AdobeRgb",
}
WORDS = (("OMBRELL", "Ombrell"), ("CIELab", "CieLab"), ("CIELCh", "CieLch"), ("CIEXYZ", "CieXyz"),
         ("CIELuv", "CieLuv"), ("CMYK", "Cmyk"), ("SRGB", "Srgb"), ("RGB", "Rgb"), ("HSL", "Hsl"),
         ("HSV", "Hsv"), ("YUV", "Yuv"), ("YIQ", "Yiq"), ("YBR", "Ybr"), ("NCS", "Ncs"),
         ("BSDF", "Bsdf"), ("ASTM", "Astm"), ("SDK", "Sdk"), ("URI", "Uri"), ("ID", "Id"))


def words(name):
    """Acronyms as other words are written, and no underscores."""
    for acronym, word in WORDS:
        name = re.sub(acronym + r"(?![a-z])", word, name)
    return "".join(part[:1].upper() + part[1:] for part in name.split("_"))


def class_name(info):
    """An element is of the class of its type."""
    while info.is_wrapper:
        info = info.base
    if info.name in CLASSES:
        return CLASSES[info.name]
    name = re.sub(r"Type$", "", info.name)
    if match := re.match(r"Substrate(.+)", name):
        return match[1] + "Substrate"
    if match := re.match(r"Function(Average)?StdDev(.)$", name):
        return f"{match[1] or ''}StandardDeviation{match[2]}"
    return words(re.sub(r"^ColorSpace(?=.)", "", name))


def enum_name(name):
    return ENUMS.get(name) or words(name)


def property_name(row):
    name = row.name
    for key in (f"{row.owner.name}.{name}", name):
        if key in PROPERTIES and (key != "Density" or row.kind != "content"):
            return PROPERTIES[key]
    if row.kind == "content":
        return "Value"
    if name.startswith("ColorSpaceSpecification"):
        rest = name[len("ColorSpaceSpecification"):]
        return rest if row.owner.name.startswith("Collection") else "Specification"
    name = words(name)
    if not row.is_list or name.endswith(("History", "s")):
        return name
    return name[:-1] + "ies" if name.endswith("y") else name + "s"


def value_names(values):
    """The values of an enumeration without what they all begin with."""
    prefix = re.match(r"[A-Za-z0-9]+_", values[0])
    prefix = prefix[0] if prefix and all(v.startswith(prefix[0]) for v in values) else ""
    names = []
    for value in values:
        rest = value[len(prefix):]
        name = VALUES.get(rest) or words("".join(c if c.isalnum() else "_" for c in rest))
        names.append(name)
    return names
